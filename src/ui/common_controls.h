#pragma once
// Registers the common controls' window classes (list view, tree view) that
// the dialog templates name, in case the host has not done so already.
void EnsureCommonControls();
