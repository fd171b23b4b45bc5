#pragma once

/// One channel's level and who holds it.
struct DmxChan {
    int chan = 0;        ///< index within the universe, 0 to 511 (a user sees 1 to 512)
    int univ = 0;        ///< index of the universe, 0 to 31
    int level = 0;       ///< 0 to 255
    bool state = false;  ///< held by a remote (true) or released to the server's show (false)
};
