#pragma once
// The favourites picker ("Select Link from Favorites"): the user's Internet
// shortcuts (.url files of the Favorites folder named in the registry) as a
// tree of folders and links.
#include <windows.h>

#include <string>

// Runs the picker modally. On OK the result is true and url is the chosen
// shortcut's address (never empty: OK on a folder keeps the dialog open).
bool RunFavoritesPicker(HWND parent, std::string& url);

// The Favorites folder: the current user's "Favorites" value under
// Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders,
// environment variables expanded. Empty when the key cannot be opened.
std::string FavoritesFolder();
