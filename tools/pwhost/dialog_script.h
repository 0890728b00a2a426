#pragma once
// Drives the plug-in's Properties dialog while it runs modally inside
// Properties(), the way a tester at the keyboard would: a thread timer takes
// one step per tick, finding the dialog among the windows owned by the host's
// frame and its grid rows through their accessibility (MSAA) interface.
//
// Steps, one per argument:
//   select NAME        focus the row named NAME
//   set NAME=VALUE     set the row's value as a screen reader would (completes input)
//   key KEY            press a key in the focused window: space, return,
//                      escape, delete, tab, up, down, f4
//   type TEXT          type characters into the focused window
//   wait MS            let the dialog run for MS milliseconds
//   shot FILE.bmp      save the screen under the host frame and the dialog
//   rows               note every row's name and shown value for the report
//   ok | cancel        click the dialog's button (and end the script)
// A script that ends without ok or cancel is cancelled. When the dialog is
// still open ten seconds after the script ended, pwhost exits with code 1.
#include "host_io.h"
#include "msvc_freestanding.h"

struct DialogScriptReport {
    bool found = false;          // the dialog was seen
    bool frameDisabled = false;  // the frame was disabled while the dialog showed
    bool failed = false;         // a step could not be carried out
    char failure[256] = {};
    char caption[256] = {};
    char developer[256] = {};
    char website[256] = {};
    char* rows = nullptr;  // JSON array text of [name, value] pairs, or null (malloc'ed)
};

// Starts the timer; the steps run while frame's modal dialog is open. The
// arguments must stay valid until StopDialogScript.
void StartDialogScript(HWND frame, int stepCount, char** steps, DialogScriptReport* report);
void StopDialogScript();
