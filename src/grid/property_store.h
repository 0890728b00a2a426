#pragma once
// The data behind a property grid: a store holds categories, categories hold
// value items, and value items hold an active cell (and may hold child value
// items of their own). Every item owns its children.
#include <memory>
#include <string>
#include <vector>

#include "grid/grid_cell.h"

class CExtPropertyItem {
public:
    enum class Kind { kStore, kCategory, kValue };

    CExtPropertyItem(Kind kind, const std::string& name, const std::string& description = std::string());
    CExtPropertyItem(const CExtPropertyItem&) = delete;
    CExtPropertyItem& operator=(const CExtPropertyItem&) = delete;
    virtual ~CExtPropertyItem();

    Kind GetKind() const { return m_kind; }
    bool IsValue() const { return m_kind == Kind::kValue; }
    bool IsCategory() const { return m_kind == Kind::kCategory; }

    const std::string& NameGet() const { return m_name; }
    void NameSet(const std::string& name) { m_name = name; }
    const std::string& DescriptionGet() const { return m_description; }
    void DescriptionSet(const std::string& description) { m_description = description; }

    CExtPropertyItem* ItemParentGet() const { return m_parent; }
    int ItemGetCount() const { return static_cast<int>(m_children.size()); }
    CExtPropertyItem* ItemGetAt(int index) const;
    // Takes ownership. A negative or too large index appends at the end.
    void ItemInsert(CExtPropertyItem* item, int index = -1);
    // Deletes the child.
    void ItemRemove(int index);
    // The first child (not grandchild) with this name, or null.
    CExtPropertyItem* ItemFind(const std::string& name) const;

    bool IsExpanded() const { return m_expanded; }
    void SetExpanded(bool expanded) { m_expanded = expanded; }

private:
    Kind m_kind;
    std::string m_name;
    std::string m_description;
    CExtPropertyItem* m_parent = nullptr;
    std::vector<CExtPropertyItem*> m_children;
    bool m_expanded = true;
};

class CExtPropertyValue : public CExtPropertyItem {
public:
    explicit CExtPropertyValue(const std::string& name, const std::string& description = std::string())
        : CExtPropertyItem(Kind::kValue, name, description) {}
    ~CExtPropertyValue() override;

    // The cell that shows and edits the value; null until one is given.
    CExtGridCell* ValueActiveGet() const { return m_active; }
    // Makes sure the active cell is of the given class (creating it, and
    // copying the old cell's value into it when the class changes) and returns it.
    CExtGridCell* ValueActiveGetByRTC(const CExtGridCellClass& cellClass);
    // The same by class name; null for an unknown class.
    CExtGridCell* ValueActiveGetByClassName(const std::string& className);
    template <class Cell>
    Cell* ValueActiveGetByRTC() {
        return static_cast<Cell*>(ValueActiveGetByRTC(Cell::kClass));
    }
    // Takes ownership of the cell and replaces the old one.
    void ValueActiveSet(CExtGridCell* cell);

    // The value the item is compared with to tell whether the user changed it
    // (changed values are painted in bold). Taken when the grid first shows
    // the item, or now.
    void ValueDefaultFromActive();
    bool HasDefault() const { return m_hasDefault; }
    const std::string& DefaultText() const { return m_defaultText; }
    bool IsModified() const;

private:
    CExtGridCell* m_active = nullptr;
    bool m_hasDefault = false;
    std::string m_defaultText;
};

class CExtPropertyCategory : public CExtPropertyItem {
public:
    explicit CExtPropertyCategory(const std::string& name, const std::string& description = std::string())
        : CExtPropertyItem(Kind::kCategory, name, description) {}
};

class CExtPropertyStore : public CExtPropertyItem {
public:
    explicit CExtPropertyStore(const std::string& name) : CExtPropertyItem(Kind::kStore, name) {}
};
