#include "grid/property_store.h"

CExtPropertyItem::CExtPropertyItem(Kind kind, const std::string& name, const std::string& description)
    : m_kind(kind), m_name(name), m_description(description) {}

CExtPropertyItem::~CExtPropertyItem() {
    for (CExtPropertyItem* child : m_children) delete child;
}

CExtPropertyItem* CExtPropertyItem::ItemGetAt(int index) const {
    return index >= 0 && index < ItemGetCount() ? m_children[index] : nullptr;
}

void CExtPropertyItem::ItemInsert(CExtPropertyItem* item, int index) {
    if (!item) return;
    if (index < 0 || index > ItemGetCount()) index = ItemGetCount();
    item->m_parent = this;
    m_children.insert(m_children.begin() + index, item);
}

void CExtPropertyItem::ItemRemove(int index) {
    if (index < 0 || index >= ItemGetCount()) return;
    delete m_children[index];
    m_children.erase(m_children.begin() + index);
}

CExtPropertyItem* CExtPropertyItem::ItemFind(const std::string& name) const {
    for (CExtPropertyItem* child : m_children)
        if (child->NameGet() == name) return child;
    return nullptr;
}

CExtPropertyValue::~CExtPropertyValue() { delete m_active; }

CExtGridCell* CExtPropertyValue::ValueActiveGetByRTC(const CExtGridCellClass& cellClass) {
    if (m_active && &m_active->GetCellClass() == &cellClass) return m_active;
    CExtGridCell* cell = cellClass.create(nullptr);
    if (m_active) cell->Assign(*m_active);
    ValueActiveSet(cell);
    return cell;
}

CExtGridCell* CExtPropertyValue::ValueActiveGetByClassName(const std::string& className) {
    const CExtGridCellClass* cellClass = CExtGridCellClass::Find(className);
    return cellClass ? ValueActiveGetByRTC(*cellClass) : nullptr;
}

void CExtPropertyValue::ValueActiveSet(CExtGridCell* cell) {
    if (cell == m_active) return;
    delete m_active;
    m_active = cell;
}

void CExtPropertyValue::ValueDefaultFromActive() {
    m_hasDefault = true;
    m_defaultText = m_active ? m_active->GetText() : std::string();
}

bool CExtPropertyValue::IsModified() const { return m_hasDefault && m_active && m_active->GetText() != m_defaultText; }
