#pragma once

#include <string>

/// One scene or one program, as the server describes it. The defaults are what an entry means that leaves a
/// key out.
struct Scene {
    std::string name;    ///< "n": the server's name for it, bytes as received
    int id = 0;          ///< "id": by which it is found on screen and switched
    int area = -1;       ///< "a": the scene's area, whose scenes exclude each other; programs have none (-1)
    int level = 0;       ///< "l": kept for the server's sake, not shown
    bool state = false;  ///< "s": running
};
