#pragma once

/// The pages, by the index that the menu and the settings know them by. The settings can keep all before the
/// parameters out of the menu.
enum Page : int { ScenesPage, ProgramsPage, ColorPage, ChannelsPage, ParamsPage, Pages };
