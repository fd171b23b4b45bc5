#pragma once

/// The server's command flags, with dimmer and speed.
struct Command {
    bool bo = false;     ///< black-out
    bool next = false;   ///< go to the next; a pulse, true only in the message that carries it
    bool prev = false;   ///< go to the previous; sent back as it came
    bool white = false;  ///< all white
    bool hold = false;   ///< pause
    int dim = 0;         ///< dimmer, 0 to 100 %
    int speed = 0;       ///< speed, 0 to 100 %
};
