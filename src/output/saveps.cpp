#include "output/saveps.h"

#include <algorithm>
#include <string>

#include "ground/path.h"
#include "ground/version.h"
#include "output/file_names.h"

namespace trimora::rooms {

namespace {
constexpr int shortest = 400;  // positions; the box of a shorter alignment is as high as that of this one
constexpr int margin = 50;     // points of the box beside the positions
}  // namespace

// The picture is drawn along x, 30 points from the edge, and turned by 90 degrees onto the page: position p covers
// x = p + 30 (sh1) to p + 31 (sh2). `seq` fills y 25 to 35, `block` y 10 to 20, between two x.
void saveps(OutputFile& out, const SelectedBlocks& blocks, int nupo, const OutputState& run) {
  out.put("%!PS-Adobe-3.0 EPSF-3.0\n");
  out.print("%%%%BoundingBox: 20 20 200 %i \n", std::max(nupo, shortest) + margin);
  out.print("%%%%Title: %s\n", run.fichero1.c_str());
  out.print("%%%%Creator Trimora %s\n", version_text);
  out.put("%%Pages: 1\n\n");
  out.put("/seq {\nnewpath\n 25   moveto\n0  10   rlineto\n  35   lineto\n0 -10 rlineto\nclosepath\nfill\n} def\n\n");
  out.put("/block {\nnewpath\n 10   moveto\n0  10   rlineto\n  20   lineto\n0 -10 rlineto\nclosepath\nfill\n} def\n\n");
  out.put("/sh1 {\n30 add\n} def\n\n");
  out.put("/sh2 {\n31 add\n} def\n\n");
  out.put("/Helvetica findfont 12 scalefont setfont\n\n");
  out.put("gsave\n180 0 translate\n90 rotate\n\n");
  out.put("newpath\n30 100 moveto\n");
  out.print("(Blocks found by Trimora version %s for the file %s) show\n", version_text,
            getpath(psfile(run)).name_file.c_str());
  out.put("30 80 moveto\n");
  out.print("(Parameters used: %i %i %i %i %i) show\n\n", run.negval, run.flankval, run.negblen, run.posblen2,
            run.tog_gaps);
  out.print("1 sh1 %i sh2 seq\n\n", nupo);
  for (const Stretch& block : blocks.newpos) out.print("%i sh1 %i sh2 block\n", block.first, block.last);
  out.put("\ngrestore\nshowpage\n%%EOF\n");
}

}  // namespace trimora::rooms
