// Faults that the type checker does not see.
import js from "@eslint/js";

export default [
  { ignores: ["node_modules/"] },
  js.configs.recommended,
  {
    rules: {
      "no-undef": "off", // tsc knows
      "array-callback-return": "error", "eqeqeq": "error", "no-shadow": "error", "no-var": "error", "prefer-const": "error",
      "no-self-compare": "error", "no-unmodified-loop-condition": "error",
      "no-unused-vars": ["error", { varsIgnorePattern: "^_", argsIgnorePattern: "^_" }],
    },
  },
  { files: ["test/*"], rules: { "no-shadow": "off" } }, // functions that run in the page know nothing around them
];
