#pragma once
// A typed value (empty, 32-bit integer, floating point, Boolean or text) with
// a text form, and the up-down cell that steps an integer with two small
// buttons (and the Up and Down keys while it is edited).
#include <cstdint>

#include "grid/grid_cell.h"

class CExtGridCellVariant : public CExtGridCell {
    PWGRID_DECLARE_CELL(CExtGridCellVariant)
public:
    enum class Type { kEmpty, kInt32, kDouble, kBool, kString };

    explicit CExtGridCellVariant(CExtGridAllocator* allocator = nullptr) : CExtGridCell(allocator) {}

    Type GetType() const { return m_type; }
    void SetEmpty() { m_type = Type::kEmpty; }
    void SetInt32(std::int32_t value) {
        m_type = Type::kInt32;
        m_int = value;
    }
    void SetDouble(double value) {
        m_type = Type::kDouble;
        m_double = value;
    }
    void SetBool(bool value) {
        m_type = Type::kBool;
        m_int = value ? 1 : 0;
    }
    void SetString(const std::string& value) {
        m_type = Type::kString;
        m_text = value;
    }
    // The value converted: text is parsed, non-numbers give 0.
    std::int32_t GetInt32() const;
    double GetDouble() const;

    std::string GetText() const override;
    // Parses the text as the current type; an empty cell takes it as text.
    void SetText(const std::string& text) override;
    bool ValidateText(const std::string& text) const override;

    void Assign(const CExtGridCell& other) override;
    void Serialize(CExtGridArchive& ar) override;
    EditorKind GetEditorKind() const override { return IsReadOnly() ? EditorKind::kNone : EditorKind::kText; }

private:
    Type m_type = Type::kEmpty;
    std::int32_t m_int = 0;
    double m_double = 0;
};

class CExtGridCellUpDown : public CExtGridCellVariant {
    PWGRID_DECLARE_CELL(CExtGridCellUpDown)
public:
    explicit CExtGridCellUpDown(CExtGridAllocator* allocator = nullptr) : CExtGridCellVariant(allocator) {
        SetInt32(0);
    }

    // Asked before every step; derived cells keep the value in a range.
    virtual bool CanStepUp() const { return true; }
    virtual bool CanStepDown() const { return true; }
    // One step up or down when allowed; true when the value changed.
    bool StepUp();
    bool StepDown();

    int GetButtonCount() const override { return 2; }
    ButtonKind GetButtonKind(int index) const override {
        return index == 0 ? ButtonKind::kSpinUp : ButtonKind::kSpinDown;
    }
    bool IsButtonEnabled(int index) const override;
    void OnButtonClick(const CExtGridCellContext& context, int index) override;
};
