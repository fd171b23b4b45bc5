#include "device/universes.h"

#include "device/logging.h"

#include <algorithm>
#include <cstring>

void Universes::Set(int nUniverse, int nChannel, int nLevel, bool bState) {
    if (HasUniverse(nUniverse) && HasChannel(nChannel)) {
        levels[At(nUniverse, nChannel)] = static_cast<unsigned char>(nLevel);
        states[At(nUniverse, nChannel)] = bState;
    } else {
        qCInfo(logDrop) << "no such channel:" << nUniverse << nChannel;
    }
}

void Universes::SetAll(int nUniverse, unsigned char ucLevel, bool bState) {
    if (HasUniverse(nUniverse)) {
        const unsigned char ucShown = bState ? ucLevel : static_cast<unsigned char>(0);
        std::fill_n(&levels[At(nUniverse, 0)], Channels, ucShown);
        std::fill_n(&states[At(nUniverse, 0)], Channels, bState);
    }
}

void Universes::SetRun(int nUniverse, int nStart, int nCount, const Color& color) {
    if (!HasUniverse(nUniverse) || !HasChannel(nStart)) {
        return;
    }
    const std::array emitters{color.r, color.g, color.b, color.w};
    const int nWidth = color.rgbw ? 4 : 3;
    const int nLimit = Channels - nWidth;
    for (int nChannel = nStart; nCount > 0 && nChannel < nLimit; nChannel += nWidth, --nCount) {
        for (int i = 0; i < nWidth; ++i) {
            Set(nUniverse, nChannel + i, emitters.at(static_cast<std::size_t>(i)), true);
        }
    }
}

bool Universes::IsHeld(int nUniverse) const {
    return std::memchr(&states[At(nUniverse, 0)], 1, Channels) != nullptr;
}
