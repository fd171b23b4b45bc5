#include "server/show/showreader.h"

namespace {

/// A small house with a stage, on universe 1: eight pars, a pack of twelve dimmers, two moving heads (pan,
/// tilt, gobo, intensity, colour).
constexpr const char* Text = R"({
  "serial": "0042",
  "fixtures": [
    { "name": "Par",    "universe": 1, "channel": 1,  "layout": "rgbw", "count": 8 },
    { "name": "House",  "universe": 1, "channel": 33, "layout": "i", "count": 4 },
    { "name": "Foyer",  "universe": 1, "channel": 37, "layout": "i", "count": 3 },
    { "name": "Garden", "universe": 1, "channel": 40, "layout": "i", "count": 2 },
    { "name": "Façade", "universe": 1, "channel": 42, "layout": "i", "count": 3 },
    { "name": "Head",   "universe": 1, "channel": 49, "layout": "xxxirgbw", "count": 2 }
  ],
  "scenes": [
    { "id": 1, "name": "House lights", "area": 0, "level": 255, "state": true, "fade": 3,
      "levels": { "House": [255] } },
    { "id": 2, "name": "Half house", "area": 0, "level": 255, "fade": 4, "levels": { "House": [120, 90, 90, 120] } },
    { "id": 3, "name": "House out", "area": 0, "level": 255, "fade": 5 },
    { "id": 4, "name": "Stage warm", "area": 1, "level": 255, "fade": 2,
      "levels": { "Par": [255, 130, 20, 170], "Head 1": [105, 70, 0, 200, 255, 170, 60, 120],
                  "Head 2": [150, 70, 0, 200, 255, 170, 60, 120] } },
    { "id": 5, "name": "Stage cool", "area": 1, "level": 255, "fade": 2,
      "levels": { "Par": [10, 90, 255, 110], "Head 1": [105, 70, 0, 200, 60, 140, 255, 160],
                  "Head 2": [150, 70, 0, 200, 60, 140, 255, 160] } },
    { "id": 6, "name": "Moonlight", "area": 1, "level": 255, "fade": 5,
      "levels": { "Par": [0, 12, 90, 0], "Par 1": [20, 60, 190, 30], "Par 8": [0, 4, 40, 0],
                  "Head 1": [60, 110, 40, 160, 120, 160, 255, 90] } },
    { "id": 7, "name": "Sunset", "area": 1, "level": 255, "fade": 8,
      "levels": { "Par": [255,150,0,60,  255,110,0,40,  255,80,0,20,  255,50,0,0,
                          255,20,20,0,  220,0,60,0,  150,0,110,0,  80,0,140,0],
                  "Head 2": [200, 40, 0, 180, 255, 90, 0, 40] } },
    { "id": 8, "name": "Blackbox", "area": 1, "level": 255, "fade": 1.5 },
    { "id": 9, "name": "Foyer day", "area": 2, "level": 255, "state": true, "fade": 2, "levels": { "Foyer": [200] } },
    { "id": 10, "name": "Foyer evening", "area": 2, "level": 255, "fade": 4, "levels": { "Foyer": [110, 60, 110] } },
    { "id": 11, "name": "Foyer clean", "area": 2, "level": 255, "levels": { "Foyer": [255] } },
    { "id": 12, "name": "Garden", "level": 255, "fade": 3, "levels": { "Garden": [220, 160] } },
    { "id": 13, "name": "Façade", "level": 255, "fade": 3, "levels": { "Façade": [255, 140, 255] } }
  ],
  "programs": [
    { "id": 1, "name": "Slow chase", "level": 255, "steps": [
        { "fade": 1.5, "hold": 0.5, "levels": { "Par 1": [255, 120, 0, 80], "Par 5": [255, 120, 0, 80] } },
        { "fade": 1.5, "hold": 0.5, "levels": { "Par 2": [255, 60, 0, 40], "Par 6": [255, 60, 0, 40] } },
        { "fade": 1.5, "hold": 0.5, "levels": { "Par 3": [255, 0, 40, 0], "Par 7": [255, 0, 40, 0] } },
        { "fade": 1.5, "hold": 0.5, "levels": { "Par 4": [200, 0, 120, 0], "Par 8": [200, 0, 120, 0] } } ] },
    { "id": 2, "name": "Rainbow", "level": 255, "steps": [
        { "fade": 2, "levels": { "Par": [255,0,0,0, 255,90,0,0, 220,180,0,0, 0,255,0,0,
                                         0,200,200,0, 0,0,255,0, 120,0,255,0, 255,0,140,0] } },
        { "fade": 2, "levels": { "Par": [220,180,0,0, 0,255,0,0, 0,200,200,0, 0,0,255,0,
                                         120,0,255,0, 255,0,140,0, 255,0,0,0, 255,90,0,0] } },
        { "fade": 2, "levels": { "Par": [0,200,200,0, 0,0,255,0, 120,0,255,0, 255,0,140,0,
                                         255,0,0,0, 255,90,0,0, 220,180,0,0, 0,255,0,0] } },
        { "fade": 2, "levels": { "Par": [120,0,255,0, 255,0,140,0, 255,0,0,0, 255,90,0,0,
                                         220,180,0,0, 0,255,0,0, 0,200,200,0, 0,0,255,0] } } ] },
    { "id": 3, "name": "Candle flicker", "level": 255, "steps": [
        { "fade": 0.15, "hold": 0.2, "levels": { "Par 3": [200, 80, 0, 10], "Par 6": [150, 55, 0, 0] } },
        { "fade": 0.1, "hold": 0.05, "levels": { "Par 3": [140, 50, 0, 0], "Par 6": [190, 75, 0, 8] } },
        { "fade": 0.2, "hold": 0.3, "levels": { "Par 3": [210, 85, 0, 14], "Par 6": [170, 65, 0, 0] } },
        { "fade": 0.08, "levels": { "Par 3": [110, 36, 0, 0], "Par 6": [180, 70, 0, 4] } },
        { "fade": 0.12, "hold": 0.1, "levels": { "Par 3": [190, 76, 0, 6], "Par 6": [120, 40, 0, 0] } },
        { "fade": 0.18, "hold": 0.25, "levels": { "Par 3": [170, 64, 0, 0], "Par 6": [200, 80, 0, 10] } } ] },
    { "id": 4, "name": "Storm", "level": 255, "steps": [
        { "fade": 0.6, "hold": 2.4, "levels": { "Par": [0, 10, 60, 0] } },
        { "hold": 0.06, "levels": { "Par": [120, 160, 255, 255], "Head 1": [90, 90, 0, 255, 200, 220, 255, 255] } },
        { "hold": 0.1, "levels": { "Par": [0, 10, 60, 0] } },
        { "hold": 0.04, "levels": { "Par": [120, 160, 255, 255], "Head 2": [165, 90, 0, 255, 200, 220, 255, 255] } },
        { "fade": 0.9, "hold": 1.6, "levels": { "Par": [0, 6, 40, 0] } },
        { "hold": 0.08, "levels": { "Par 7": [120, 160, 255, 255], "Par 8": [120, 160, 255, 255] } } ] },
    { "id": 5, "name": "Walk-in", "level": 255, "steps": [
        { "fade": 6, "hold": 1, "levels": { "Par": [60, 20, 90, 10], "Head 1": [70, 120, 60, 140, 160, 60, 255, 0],
                                            "Head 2": [185, 60, 60, 140, 255, 110, 0, 20] } },
        { "fade": 6, "hold": 1, "levels": { "Par": [20, 40, 100, 10], "Head 1": [125, 60, 60, 140, 255, 110, 0, 20],
                                            "Head 2": [130, 120, 60, 140, 160, 60, 255, 0] } },
        { "fade": 6, "hold": 1, "levels": { "Par": [80, 30, 40, 10], "Head 1": [180, 100, 60, 140, 0, 160, 200, 0],
                                            "Head 2": [75, 100, 60, 140, 0, 160, 200, 0] } } ] },
    { "id": 6, "name": "Curtain call", "level": 255, "steps": [
        { "fade": 0.2, "hold": 0.4, "levels": { "Par": [255,200,120,255, 60,45,25,40, 255,200,120,255, 60,45,25,40,
                                                        255,200,120,255, 60,45,25,40, 255,200,120,255, 60,45,25,40],
                                                "Head": [128, 60, 0, 255, 255, 220, 160, 255] } },
        { "fade": 0.2, "hold": 0.4, "levels": { "Par": [60,45,25,40, 255,200,120,255, 60,45,25,40, 255,200,120,255,
                                                        60,45,25,40, 255,200,120,255, 60,45,25,40, 255,200,120,255],
                                                "Head": [128, 110, 0, 255, 255, 220, 160, 255] } } ] },
    { "id": 7, "name": "Night watch", "level": 255, "steps": [
        { "fade": 4, "hold": 20, "levels": { "House 1": [18], "Foyer": [25], "Garden 1": [40] } },
        { "fade": 4, "hold": 20, "levels": { "House 4": [18], "Foyer": [25], "Garden 2": [40] } } ] }
  ]
})";

}  // namespace

Show Show::BuiltIn() {
    return ReadShow("the built-in show", Text);
}
