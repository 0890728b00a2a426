#pragma once
// A spin cell that steps only within a range, 0 to 99 unless set otherwise.
// Typed text is not clamped; only the spin buttons and keys stop at the
// bounds.
#include <cstdint>

#include "grid/cell_variant.h"

class CExtGridCellUpDownRange : public CExtGridCellUpDown {
    PWGRID_DECLARE_CELL(CExtGridCellUpDownRange)
public:
    explicit CExtGridCellUpDownRange(CExtGridAllocator* allocator = nullptr) : CExtGridCellUpDown(allocator) {}

    std::int32_t GetLowerBound() const { return m_lower; }
    std::int32_t GetUpperBound() const { return m_upper; }
    void SetRange(std::int32_t lower, std::int32_t upper) {
        m_lower = lower;
        m_upper = upper;
    }

    void Assign(const CExtGridCell& other) override;
    // The base part, then the lower and the upper bound.
    void Serialize(CExtGridArchive& ar) override;
    bool CanStepUp() const override { return GetInt32() < m_upper; }
    bool CanStepDown() const override { return GetInt32() > m_lower; }

private:
    std::int32_t m_lower = 0;
    std::int32_t m_upper = 99;
};
