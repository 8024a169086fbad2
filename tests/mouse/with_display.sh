#!/bin/sh
# Runs a test on an X server of its own, below a window manager; 77, which means skipped, where one
# of them is missing, or somebody to move the mouse.
for tool in xvfb-run xdotool openbox xprop; do command -v "$tool" >/dev/null || exit 77; done
# shellcheck disable=SC2016 # "$@" is for the inner shell
QT_QPA_PLATFORM=xcb exec xvfb-run -a -s '-screen 0 1280x800x24' sh -c 'openbox &
  until xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"; do sleep 0.1; done
  "$@"' mouse "$@"
