#pragma once

#include <QtGlobal>

// A macro, because the address stands inside texts that are translated as a whole.
#define TAVREL_WEB_PAGE "https://tavrel.example/"

/// What the program says of itself.
namespace product {

inline constexpr char organization[] = "Brennick";
inline constexpr char organization_domain[] = "brennick.example";
inline constexpr char application[] = "Tavrel";
inline constexpr char version[] = "1.42";

/// The product web page.
inline constexpr char web_page[] = TAVREL_WEB_PAGE;

/// Text of the About box, in the context MainFen.
inline constexpr char about_text[] =
    "<strong>Tavrel v1.42</strong><br />Copyright 2026 Brennick<br /><hr />"
    "Pour plus d'information :<br />"
    "<a href=\"" TAVREL_WEB_PAGE "\">" TAVREL_WEB_PAGE "</a>";

/// Second to fourth line of a checksum file, in the context MyTreeWidget.
inline constexpr char checksum_header[] = "# " TAVREL_WEB_PAGE "\n#\n\n";

/// Resource path of the English catalogue.
inline constexpr char english_catalogue[] = ":tavrel_en.qm";

} // namespace product
