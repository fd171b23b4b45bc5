#pragma once

#include <string>

/// What is to be recorded as a scene.
struct Recording {
    std::string name;
    int area = -1;     ///< as Scene::area
    int fadeMs = 0;    ///< 0 to a day
    std::string only;  ///< fixtures or units by their names, commas between; all where it is empty
};
