// The toolkit's own cells, registered by name. Naming each class here also
// keeps its object file linked into programs that only create cells by name.
#include "grid/cell_bool.h"
#include "grid/cell_color.h"
#include "grid/cell_combo.h"
#include "grid/cell_file.h"
#include "grid/cell_string.h"
#include "grid/cell_variant.h"

void RegisterBuiltInGridCells() {
    static bool done = false;
    if (done) return;
    done = true;
    for (const CExtGridCellClass* c :
         {&CExtGridCell::kClass, &CExtGridCellString::kClass, &CExtGridCellPassword::kClass,
          &CExtGridCellHeader::kClass, &CExtGridCellBool::kClass, &CExtGridCellColor::kClass, &CExtGridCellFile::kClass,
          &CExtGridCellFolder::kClass, &CExtGridCellComboBox::kClass, &CExtGridCellDropListComboBox::kClass,
          &CExtGridCellFontName::kClass, &CExtGridCellVariant::kClass, &CExtGridCellUpDown::kClass})
        CExtGridCellClass::Register(*c);
}
