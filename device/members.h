#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/dmxchan.h"
#include "device/recording.h"
#include "device/scene.h"

#include <string_view>
#include <tuple>

/// What a record's field is called on the wire.
template <typename Field>
struct Member {
    std::string_view name;
    Field field;
};
template <typename Field>
Member(std::string_view, Field) -> Member<Field>;

// The members of each record, in the order in which they are written.

inline constexpr std::tuple SceneMembers{Member{"n", &Scene::name}, Member{"id", &Scene::id},
                                         Member{"a", &Scene::area}, Member{"l", &Scene::level},
                                         Member{"s", &Scene::state}};

/// A colour's levels are an object of their own, "color".
inline constexpr std::tuple LevelMembers{Member{"r", &Color::r}, Member{"g", &Color::g},
                                         Member{"b", &Color::b}, Member{"w", &Color::w}};
inline constexpr std::tuple ColorMembers{Member{"rgbw", &Color::rgbw}, Member{"s", &Color::state}};

inline constexpr std::tuple CommandMembers{Member{"bo", &Command::bo},      Member{"next", &Command::next},
                                           Member{"prev", &Command::prev},  Member{"white", &Command::white},
                                           Member{"hold", &Command::hold},  Member{"dim", &Command::dim},
                                           Member{"speed", &Command::speed}};

inline constexpr std::tuple ChannelMembers{Member{"chan", &DmxChan::chan}, Member{"univ", &DmxChan::univ},
                                           Member{"level", &DmxChan::level}, Member{"s", &DmxChan::state}};

inline constexpr std::tuple RecordingMembers{Member{"n", &Recording::name}, Member{"a", &Recording::area},
                                             Member{"fade", &Recording::fadeMs},
                                             Member{"only", &Recording::only}};
