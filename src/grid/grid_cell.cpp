#include "grid/grid_cell.h"

#include <map>
#include <new>

#include "grid/grid_archive.h"
#include "grid/paint_manager.h"
#include "grid/property_grid_wnd.h"

// ---- classes by name ------------------------------------------------------

namespace {
std::map<std::string, const CExtGridCellClass*>& Registry() {
    static std::map<std::string, const CExtGridCellClass*> registry;
    return registry;
}
}  // namespace

const CExtGridCellClass CExtGridCell::kClass{
    "CExtGridCell", nullptr,
    [](CExtGridAllocator* allocator) -> CExtGridCell* { return new (allocator) CExtGridCell(allocator); }};

void RegisterBuiltInGridCells();  // cells.cpp: keeps the toolkit's cells linked in

bool CExtGridCellClass::IsDerivedFrom(const CExtGridCellClass& other) const {
    for (const CExtGridCellClass* c = this; c; c = c->base)
        if (c == &other) return true;
    return false;
}

void CExtGridCellClass::Register(const CExtGridCellClass& cellClass) { Registry()[cellClass.name] = &cellClass; }

const CExtGridCellClass* CExtGridCellClass::Find(const std::string& name) {
    RegisterBuiltInGridCells();
    auto it = Registry().find(name);
    return it == Registry().end() ? nullptr : it->second;
}

CExtGridCell* CExtGridCellClass::CreateCell(const std::string& name, CExtGridAllocator* allocator) {
    const CExtGridCellClass* cellClass = Find(name);
    return cellClass ? cellClass->create(allocator) : nullptr;
}

// ---- memory -----------------------------------------------------------------
// Every cell block starts with a header naming its allocator, so delete can
// hand the block back to the allocator that made it.

namespace {
constexpr std::size_t kHeaderSize = alignof(std::max_align_t) > sizeof(void*) ? alignof(std::max_align_t)
                                                                              : sizeof(void*);
}

void* CExtGridCell::operator new(std::size_t size, CExtGridAllocator* allocator) {
    void* block = allocator ? allocator->Allocate(size + kHeaderSize) : ::operator new(size + kHeaderSize);
    if (!block) throw std::bad_alloc();
    *static_cast<CExtGridAllocator**>(block) = allocator;
    return static_cast<char*>(block) + kHeaderSize;
}

void CExtGridCell::operator delete(void* cell) {
    if (!cell) return;
    void* block = static_cast<char*>(cell) - kHeaderSize;
    CExtGridAllocator* allocator = *static_cast<CExtGridAllocator**>(block);
    if (allocator)
        allocator->Free(block);
    else
        ::operator delete(block);
}

// ---- copy, clone, archive ---------------------------------------------------

void CExtGridCell::Assign(const CExtGridCell& other) {
    m_text = other.m_text;
    m_readOnly = other.m_readOnly;
}

CExtGridCell* CExtGridCell::Clone(CExtGridAllocator* allocator) const {
    CExtGridCell* copy = GetCellClass().create(allocator);
    copy->Assign(*this);
    return copy;
}

void CExtGridCell::Serialize(CExtGridArchive& ar) {
    ar.Exchange(m_text);
    ar.Exchange(m_readOnly);
}

// ---- painting ---------------------------------------------------------------

bool CExtGridCell::IsTextRectVisible(const CExtGridPaintContext& pc, const RECT& textRect) const {
    RECT overlap;
    if (IsRectEmpty(&textRect)) return false;
    if (IsRectEmpty(&pc.clip)) return true;
    return IntersectRect(&overlap, &textRect, &pc.clip) != FALSE;
}

void CExtGridCell::PaintValue(const CExtGridPaintContext& pc, const RECT& valueRect) const {
    const CExtGridPaintManager& pm = *pc.pm;
    RECT textRect = valueRect;
    textRect.left += pm.Scale(4);
    int iconWidth = GetIconWidth(pm);
    if (iconWidth > 0) {
        RECT iconRect = textRect;
        iconRect.right = iconRect.left + iconWidth;
        PaintIcon(pc, iconRect);
        textRect.left = iconRect.right + pm.Scale(4);
    }
    OnPaintText(pc, textRect);
}

void CExtGridCell::OnPaintText(const CExtGridPaintContext& pc, const RECT& textRect) const {
    if (!IsTextRectVisible(pc, textRect)) return;
    std::string text = GetDisplayText();
    HGDIOBJ oldFont = SelectObject(pc.dc, pc.font);
    COLORREF oldColor = SetTextColor(pc.dc, pc.textColor);
    int oldMode = SetBkMode(pc.dc, TRANSPARENT);
    RECT rc = textRect;
    DrawTextA(pc.dc, text.c_str(), static_cast<int>(text.size()), &rc,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SetBkMode(pc.dc, oldMode);
    SetTextColor(pc.dc, oldColor);
    SelectObject(pc.dc, oldFont);
}

// ---- context ----------------------------------------------------------------

HWND CExtGridCellContext::OwnerWindow() const { return grid ? GetAncestor(grid->GetHwnd(), GA_ROOT) : nullptr; }

void CExtGridCellContext::InputComplete() const {
    if (grid && item) grid->OnCellInputComplete(*item);
}

void CExtGridCellContext::ValueApplied() const {
    if (grid && item) grid->OnCellValueApplied(*item);
}

void CExtGridCellContext::Invalidate() const {
    if (grid) grid->InvalidateRow(row);
}
