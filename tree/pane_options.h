#pragma once

/// A pane's options, set from the settings before use and by the options dialog. Both panes have
/// the same.
struct PaneOptions
{
    bool ccname = false;   ///< copies include the name
    bool ccsize = false;   ///< copies include the size
    bool ccpath = false;   ///< copies include the path
    bool upper = false;    ///< checksums are shown in capitals
    bool rem_dir = false;  ///< directories are remembered across runs
    bool rem_view = false; ///< the view layout is remembered across runs
};
