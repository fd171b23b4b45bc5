// Writes PNG files anew, each over itself, so that the program reads them faster.
//
//   plain FILE.png...

#include "tools/plainpng.h"

#include <cstdio>

int main(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        const QImage picture(argv[i]);
        if (picture.isNull() || !SavePlain(picture, argv[i])) {
            std::fprintf(stderr, "plain: cannot rewrite %s\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
