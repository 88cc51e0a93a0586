// How Debian's browsers are started: without a window, and without a connection of their own.

/** @type {Record<string, import("puppeteer-core").LaunchOptions>} */
export const browsers = {
  chromium: { browser: "chrome", executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-background-networking", "--disable-component-update", "--disable-sync"] },
  firefox: { browser: "firefox", executablePath: "/usr/bin/firefox-esr" },
};
