#include "server/show.h"

Show Show::BuiltIn() {
    const auto scene = [](int nId, int nArea, const char* pName, bool bState = false) {
        return Scene{pName, nId, nArea, 255, bState};
    };
    const auto program = [](int nId, const char* pName) { return Scene{pName, nId, -1, 255, false}; };
    Show show;
    show.serial = "0042";
    show.scenes = {scene(1, 0, "House lights", true),
                   scene(2, 0, "Half house"),
                   scene(3, 0, "House out"),
                   scene(4, 1, "Stage warm"),
                   scene(5, 1, "Stage cool"),
                   scene(6, 1, "Moonlight"),
                   scene(7, 1, "Sunset"),
                   scene(8, 1, "Blackbox"),
                   scene(9, 2, "Foyer day", true),
                   scene(10, 2, "Foyer evening"),
                   scene(11, 2, "Foyer clean"),
                   scene(12, -1, "Garden"),
                   scene(13, -1, "Façade")};
    show.programs = {program(1, "Slow chase"), program(2, "Rainbow"), program(3, "Candle flicker"),
                     program(4, "Storm"),      program(5, "Walk-in"), program(6, "Curtain call"),
                     program(7, "Night watch")};
    return show;
}
