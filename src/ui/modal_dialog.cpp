#include "ui/modal_dialog.h"

// Centres the dialog over its owner (the screen's work area without one),
// kept inside the work area of the owner's monitor.
void CenterOverOwner(HWND dialog, HWND owner) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(owner ? owner : dialog, MONITOR_DEFAULTTOPRIMARY), &monitor);
    RECT area = monitor.rcWork;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &area);
    RECT box;
    GetWindowRect(dialog, &box);
    int width = box.right - box.left, height = box.bottom - box.top;
    int x = (area.left + area.right - width) / 2, y = (area.top + area.bottom - height) / 2;
    const RECT& work = monitor.rcWork;
    if (x + width > work.right) x = work.right - width;
    if (y + height > work.bottom) y = work.bottom - height;
    if (x < work.left) x = work.left;
    if (y < work.top) y = work.top;
    SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
