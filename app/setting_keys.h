#pragma once

#include <QLatin1StringView>

/// What the settings file calls its values, for whoever reads or writes one.
namespace setting {

inline constexpr QLatin1StringView size("MainWindow/size");
inline constexpr QLatin1StringView position("MainWindow/pos");
inline constexpr QLatin1StringView language("MainWindow/lang");
inline constexpr QLatin1StringView splitter("MainWindow/splitterSizes");
inline constexpr QLatin1StringView orientation("MainWindow/views");
inline constexpr QLatin1StringView algorithm("App/alg");
inline constexpr QLatin1StringView first_directory("App/tree1");
inline constexpr QLatin1StringView second_directory("App/tree2");
inline constexpr QLatin1StringView copy_name("App/ccname");
inline constexpr QLatin1StringView copy_size("App/ccsize");
inline constexpr QLatin1StringView copy_path("App/ccpath");
inline constexpr QLatin1StringView upper_case("App/upper");
inline constexpr QLatin1StringView keep_directories("App/rem_dir");
inline constexpr QLatin1StringView keep_view("App/rem_view");
inline constexpr QLatin1StringView exclusions("App/exclu");

} // namespace setting
