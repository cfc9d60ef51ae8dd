#include "BrokenFiles.h"

namespace zrfigure::fixtures {
namespace {

const char* const kTwoWedges =
    "# two wedges\no left\nv 0 0 0\nv 10 0 0\nv 0 20 0\nv 0 0 8\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n"
    "o right\nv 30 0 0\nv 40 0 0\nv 30 20 0\nv 30 0 8\nf 5 7 6\nf 5 6 8\nf 6 7 8\nf 7 5 8\n";

const Damage kDamages[] = {{"index-beyond", "f 1 3 2", "f 1 3 99"},
                           {"index-endless", "f 1 3 2", "f 1 3 99999999999999999999"},
                           {"index-nought", "f 1 3 2", "f 0 0 0"},
                           {"index-back-too-far", "f 1 3 2", "f -1 -2 -99"},
                           {"index-smallest", "f 1 3 2", "f -2147483648 1 2"},
                           {"index-text", "f 1 3 2", "f one three two"},
                           {"every-index-beyond", "f \\d \\d \\d", "f 100 200 300", 0},
                           {"texture-beyond", "f 1 3 2", "f 1/99 3/98 2/97"},
                           {"normal-beyond", "f 1 3 2", "f 1//99 3//98 2//97"},
                           {"slashes", "f 1 3 2", "f 1/// //3 /2/"},
                           {"corner-alone", "f (\\d) \\d \\d", "f $1", 0},
                           {"corners-two", "f (\\d) (\\d) \\d", "f $1 $2", 0},
                           {"corners-equal", "f (\\d) \\d \\d", "f $1 $1 $1", 0},
                           {"corners-many", "f 1 3 2", "f 1 3 2" + std::string(200000, ' ') + "4"},
                           {"point-short", "v 10 0 0", "v 10"},
                           {"points-nan", "v \\d+", "v nan", 0},
                           {"points-infinite", "v \\d+", "v inf", 0},
                           {"points-huge", "v (\\d+)", "v 1e308", 0},
                           {"points-far", "v (\\d+)", "v $011e30", 0},
                           {"point-far", "v 10 0 0", "v 1e308 0 0"},
                           {"points-tiny", "v (\\d+) \\d+ \\d+", "v 1e-40 0 0", 0},
                           {"points-text", "v (\\d+)", "v $1x", 0},
                           {"no-points", "v [^\n]*\n", "", 0},
                           {"no-faces", "f [^\n]*\n", "", 0},
                           {"zero-byte", "v 10 0 0", std::string("v 10\0 0 0", 9)},
                           {"broken-utf-8", "o left",
                            "o l\xC3"
                            "e\xF0\x9F"},
                           {"control-characters", "o left", "o \x1b[2J left\t"},
                           {"long-line", "o left", "o " + std::string(2 << 20, 'x')},
                           {"continued-for-ever", "o left", "o left \\\\"},
                           {"library-missing", "o left", "mtllib no-such.mtl\nusemtl steel\no left"},
                           {"library-is-itself", "o left", "mtllib library-is-itself.obj\nusemtl steel\no left"},
                           {"library-is-a-device", "o left", "mtllib /dev/zero\nusemtl steel\no left"}};

}  // namespace

BrokenFiles BrokenObjFiles() {
  const std::string whole = kTwoWedges;
  BrokenFiles files;
  for (const Damage& damage : kDamages) files.push_back({damage.name + ".obj", Damaged(whole, damage)});
  AddCut("cut", ".obj", whole, "", 4, files);
  AddFlipped("flipped", ".obj", whole, 0, 12, files);
  return files;
}

}  // namespace zrfigure::fixtures
