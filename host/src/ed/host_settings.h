#pragma once

#include "tables/settings.h"

#include <map>
#include <string>

namespace korra::ed {

/// The settings that belong to the host rather than to a drawing; they last until it stops.
class HostSettings {
public:
    int get(const Setting<int>& setting) const
    {
        const auto found = changed_.find(setting.name);
        return found == changed_.end() ? setting.byDefault : found->second;
    }

    void set(const Setting<int>& setting, int value) { changed_[setting.name] = value; }

private:
    std::map<std::wstring, int> changed_;
};

namespace host_settings {

inline constexpr int kNoCode = 0; ///< no file holds them

inline constexpr Setting<int> kAperture{L"APERTURE", kNoCode, 10, {1, 50}};
inline constexpr Setting<int> kCommandEcho{L"CMDECHO", kNoCode, 1, {0, 1}};
inline constexpr Setting<int> kFileDialogs{L"FILEDIA", kNoCode, 1, {0, 1}};
inline constexpr Setting<int> kGripSize{L"GRIPSIZE", kNoCode, 5, {0, 255}};
inline constexpr Setting<int> kDefaultLineWeight{L"LWDEFAULT", kNoCode, 25, {0, 211}};
inline constexpr Setting<int> kSnapModes{L"OSMODE", kNoCode, 0, {-32768, 32767}};
inline constexpr Setting<int> kPickBox{L"PICKBOX", kNoCode, 3, {0, 32767}}; ///< pixels

} // namespace host_settings
} // namespace korra::ed
