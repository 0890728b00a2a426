#include "grid/cell_variant.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "grid/grid_archive.h"
#include "xml/ascii.h"

PWGRID_IMPLEMENT_CELL(CExtGridCellVariant, CExtGridCell)
PWGRID_IMPLEMENT_CELL(CExtGridCellUpDown, CExtGridCellVariant)

namespace {
bool ParseInt32(const std::string& text, std::int32_t* value) {
    std::string t(ascii::Trim(text));
    if (t.empty()) return false;
    errno = 0;
    char* end = nullptr;
    long long v = std::strtoll(t.c_str(), &end, 10);
    if (*end || errno == ERANGE || v < INT32_MIN || v > INT32_MAX) return false;
    *value = static_cast<std::int32_t>(v);
    return true;
}

bool ParseDouble(const std::string& text, double* value) {
    std::string t(ascii::Trim(text));
    if (t.empty()) return false;
    char* end = nullptr;
    double v = std::strtod(t.c_str(), &end);
    if (*end) return false;
    *value = v;
    return true;
}
}  // namespace

std::int32_t CExtGridCellVariant::GetInt32() const {
    switch (m_type) {
        case Type::kInt32:
        case Type::kBool: return m_int;
        case Type::kDouble: return static_cast<std::int32_t>(m_double);
        case Type::kString: {
            std::int32_t v = 0;
            return ParseInt32(m_text, &v) ? v : 0;
        }
        default: return 0;
    }
}

double CExtGridCellVariant::GetDouble() const {
    if (m_type == Type::kDouble) return m_double;
    if (m_type == Type::kString) {
        double v = 0;
        return ParseDouble(m_text, &v) ? v : 0;
    }
    return GetInt32();
}

std::string CExtGridCellVariant::GetText() const {
    char buffer[64];
    switch (m_type) {
        case Type::kInt32: std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(m_int)); return buffer;
        case Type::kDouble: std::snprintf(buffer, sizeof buffer, "%g", m_double); return buffer;
        case Type::kBool: return m_int ? "true" : "false";
        case Type::kString: return m_text;
        default: return std::string();
    }
}

void CExtGridCellVariant::SetText(const std::string& text) {
    switch (m_type) {
        case Type::kInt32: ParseInt32(text, &m_int); break;
        case Type::kDouble: ParseDouble(text, &m_double); break;
        case Type::kBool: m_int = text == "true" ? 1 : 0; break;
        default: SetString(text); break;
    }
}

bool CExtGridCellVariant::ValidateText(const std::string& text) const {
    std::int32_t i;
    double d;
    switch (m_type) {
        case Type::kInt32: return ParseInt32(text, &i);
        case Type::kDouble: return ParseDouble(text, &d);
        case Type::kBool: return text == "true" || text == "false";
        default: return true;
    }
}

void CExtGridCellVariant::Assign(const CExtGridCell& other) {
    CExtGridCell::Assign(other);
    if (!other.IsKindOf(kClass)) return;
    const auto& o = static_cast<const CExtGridCellVariant&>(other);
    m_type = o.m_type;
    m_int = o.m_int;
    m_double = o.m_double;
}

void CExtGridCellVariant::Serialize(CExtGridArchive& ar) {
    CExtGridCell::Serialize(ar);
    std::int32_t type = static_cast<std::int32_t>(m_type);
    ar.Exchange(type);
    ar.Exchange(m_int);
    // The double travels as its text, which round-trips with %.17g.
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.17g", m_double);
    std::string number = buffer;
    ar.Exchange(number);
    if (ar.IsLoading()) {
        m_type = type >= 0 && type <= static_cast<std::int32_t>(Type::kString) ? static_cast<Type>(type) : Type::kEmpty;
        m_double = std::strtod(number.c_str(), nullptr);
    }
}

// ---- up-down ----------------------------------------------------------------

bool CExtGridCellUpDown::StepUp() {
    std::int32_t value = GetInt32();
    if (!CanStepUp() || value == INT32_MAX) return false;
    SetInt32(value + 1);
    return true;
}

bool CExtGridCellUpDown::StepDown() {
    std::int32_t value = GetInt32();
    if (!CanStepDown() || value == INT32_MIN) return false;
    SetInt32(value - 1);
    return true;
}

bool CExtGridCellUpDown::IsButtonEnabled(int index) const {
    if (IsReadOnly()) return false;
    return index == 0 ? CanStepUp() : CanStepDown();
}

void CExtGridCellUpDown::OnButtonClick(const CExtGridCellContext& context, int index) {
    if (IsReadOnly()) return;
    if (!(index == 0 ? StepUp() : StepDown())) return;
    context.Invalidate();
    context.ValueApplied();
}
