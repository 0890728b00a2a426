#pragma once
// The demo's properties: two categories with one row of every cell kind.
#include "grid/property_store.h"

CExtPropertyStore* BuildDemoStore();
