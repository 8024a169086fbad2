#!/bin/sh
# Runs a test on an X server of its own; 77, which means skipped, where there is no such server or
# nobody to move its mouse.
command -v xvfb-run >/dev/null && command -v xdotool >/dev/null || exit 77
QT_QPA_PLATFORM=xcb exec xvfb-run -a -s '-screen 0 1280x800x24' "$@"
