#include "server/lamps/patch.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

// A channel's kind: its letter, as a position in Letters, and what it shares with its fixture.
constexpr std::string_view Letters = " irgbwax";
enum Letter : unsigned char { Nothing, Intensity, Red, Green, Blue, White, Emitter, Other };
constexpr unsigned char LetterBits = 0x07;
constexpr unsigned char Dimmed = 0x08;
constexpr unsigned char TakesRgb = 0x10;   ///< a colour replaces something of this fixture
constexpr unsigned char TakesRgbw = 0x20;  ///< the same of a colour with white
constexpr unsigned char Independent = 0x40;
constexpr std::size_t Kinds = 0x80;

constexpr float Full = 255;
constexpr float Kept = -1;
/// A level of one channel, as one of a channel and its fine half: 255 is all of both.
constexpr float Widened = 257.0F / 256;

/// What becomes of the channels of one kind.
struct Grading {
    float replaced = Kept;
    float gain = 0;
};

Letter LetterOf(unsigned char ucKind) {
    return static_cast<Letter>(ucKind & LetterBits);
}

/// What a colour makes of the channels of each letter.
std::array<float, Letters.size()> Replacements(const Color& color) {
    const auto level = [](int nLevel) { return static_cast<float>(std::clamp(nLevel, 0, 255)); };
    return {Kept, Full, level(color.r), level(color.g), level(color.b), color.rgbw ? level(color.w) : Kept,
            0,    Kept};
}

Grading GradingOf(unsigned char ucKind, const Command& command) {
    const Letter letter = LetterOf(ucKind);
    if (letter == Nothing || letter == Other) {
        return {};
    }
    if ((ucKind & Independent) != 0) {
        return {Kept, 1};
    }
    if (command.bo) {
        return {};
    }
    const float dimmer = static_cast<float>(std::clamp(command.dim, 0, 100)) / 100;
    return {command.white ? Full : Kept, (ucKind & Dimmed) != 0 ? dimmer : 1};
}

}  // namespace

Patch::Patch(const std::vector<Fixture>& fixtures) {
    for (const Fixture& fixture : fixtures) {
        for (int i = 0; i < fixture.count; ++i) {
            Add(fixture, i);
        }
        m_used.set(static_cast<std::size_t>(fixture.universe));
    }
}

void Patch::Add(const Fixture& fixture, int iUnit) {
    const std::string& sLayout = fixture.layout;
    const auto has = [&sLayout](const char* pLetters) {
        return sLayout.find_first_of(pLetters) != std::string::npos;
    };
    const int nShared =
        fixture.independent ? Independent : (has("rgb") ? TakesRgb : 0) | (has("rgbw") ? TakesRgbw : 0);
    const std::size_t first = static_cast<std::size_t>(iUnit) * sLayout.size();
    std::size_t at = Universes::At(fixture.universe, fixture.channel) + first;
    for (std::size_t i = 0; i < sLayout.size(); ++i, ++at) {
        const std::size_t nFound = Letters.find(sLayout[i]);
        const auto letter = nFound < Letters.size() ? static_cast<Letter>(nFound) : Nothing;
        const bool bDimmed = letter == Intensity || (letter != Other && !has("i"));
        m_kinds.at(at) = static_cast<unsigned char>(letter | nShared | (bDimmed ? Dimmed : 0));
        m_fine[at] = i + 1 < sLayout.size() && sLayout[i + 1] == 'f';
        if (HasFine(at) && IsLit(at)) {
            m_widened.push_back(at);
        }
        if (letter == Other && !fixture.defaults.empty()) {
            const int nFine = HasFine(at) ? fixture.defaults.at(first + i + 1) : 0;
            m_defaults[at] =
                static_cast<float>(fixture.defaults.at(first + i)) + static_cast<float>(nFine) / 256;
        }
    }
}

bool Patch::IsLit(std::size_t at) const {
    const Letter letter = LetterOf(m_kinds.at(at));
    return letter != Nothing && letter != Other;
}

bool Patch::IsOther(std::size_t at) const {
    return LetterOf(m_kinds.at(at)) == Other;
}

bool Patch::IsDimmed(std::size_t at) const {
    return (m_kinds.at(at) & Dimmed) != 0;
}

bool Patch::IsGraded(std::size_t at) const {
    const bool bFineOfGraded = at > 0 && HasFine(at - 1) && IsGraded(at - 1);
    return (IsLit(at) && (m_kinds.at(at) & Independent) == 0) || bFineOfGraded;
}

void Patch::Put(std::size_t at, float level, Levels& levels) const {
    if (HasFine(at)) {
        const auto nLevel = static_cast<unsigned>(std::lround(level * 256));
        levels.at(at) = static_cast<unsigned char>(nLevel / 256);
        levels.at(at + 1) = static_cast<unsigned char>(nLevel % 256);
    } else {
        levels.at(at) = Rounded(level);
    }
}

ChannelSet Patch::Paint(const Color& color, FineLevels& show) const {
    const auto replacements = Replacements(color);
    const int nTakes = color.rgbw ? TakesRgbw : TakesRgb;
    ChannelSet painted;
    for (std::size_t at = 0; at < m_kinds.size(); ++at) {
        const float level = replacements[LetterOf(m_kinds[at])];
        if ((m_kinds[at] & nTakes) != 0 && level >= 0) {
            painted.set(at);
            show[at] = m_fine[at] ? level * Widened : level;
        }
    }
    return painted;
}

void Patch::Grade(const FineLevels& show, const Command& command, Levels& levels) const {
    std::array<Grading, Kinds> gradings;
    for (std::size_t i = 0; i < Kinds; ++i) {
        gradings[i] = GradingOf(static_cast<unsigned char>(i), command);
    }
    levels.fill(0);
    for (std::size_t nUniverse = 0; nUniverse < m_used.size(); ++nUniverse) {
        const std::size_t begin = nUniverse * Universes::Channels;
        for (std::size_t at = begin; m_used[nUniverse] && at < begin + Universes::Channels; ++at) {
            const Grading& grading = gradings[m_kinds[at]];
            const float level = grading.replaced < 0 ? show[at] : grading.replaced;
            levels[at] = Rounded(level * grading.gain);
        }
    }
    for (const std::size_t at : m_widened) {
        const Grading& grading = gradings.at(m_kinds.at(at));
        const float level = grading.replaced < 0 ? show.at(at) : grading.replaced * Widened;
        Put(at, level * grading.gain, levels);
    }
}
