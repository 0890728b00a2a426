// The rows as seen by screen readers through MSAA.
#include "grid_fixture.h"

#include <oleacc.h>

#include "../com_text.h"

namespace {

VARIANT Child(long id) {
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = id;
    return v;
}
}  // namespace

class GridAccessibility : public GridFixture {
protected:
    void SetUp() override {
        GridFixture::SetUp();
        CoInitialize(nullptr);
        ASSERT_EQ(AccessibleObjectFromWindow(RowsHwnd(), static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                             reinterpret_cast<void**>(&m_acc)),
                  S_OK);
    }
    void TearDown() override {
        if (m_acc) m_acc->Release();
        GridFixture::TearDown();
        CoUninitialize();
    }
    IAccessible* m_acc = nullptr;
};

// Names, values, selection and setting a value are driven through the real
// Properties dialog by the plug-in tests; these are the rest.
TEST_F(GridAccessibility, RowsHaveADescriptionAndARole) {
    int title = RowOf("Title") + 1;
    BSTR text = nullptr;
    ASSERT_EQ(m_acc->get_accDescription(Child(title), &text), S_OK);
    EXPECT_EQ(TakeBstr(text), "The caption.");
    VARIANT role;
    ASSERT_EQ(m_acc->get_accRole(Child(1), &role), S_OK);
    EXPECT_EQ(role.lVal, ROLE_SYSTEM_OUTLINEITEM);  // a category
    EXPECT_EQ(m_acc->get_accName(Child(99), &text), E_INVALIDARG);
}

TEST_F(GridAccessibility, FocusAndStateFollowTheGrid) {
    Focus("Color");
    SetFocus(RowsHwnd());
    VARIANT focus;
    ASSERT_EQ(m_acc->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.lVal, RowOf("Color") + 1);
    VARIANT state;
    ASSERT_EQ(m_acc->get_accState(Child(RowOf("Color") + 1), &state), S_OK);
    EXPECT_TRUE(state.lVal & STATE_SYSTEM_SELECTED);
    ASSERT_EQ(m_acc->get_accState(Child(1), &state), S_OK);
    EXPECT_TRUE(state.lVal & STATE_SYSTEM_EXPANDED);
}

TEST_F(GridAccessibility, AValueTheCellRefusesIsNotSet) {
    BSTR refused = SysAllocString(L"13");
    EXPECT_EQ(m_acc->put_accValue(Child(RowOf("Size") + 1), refused), E_INVALIDARG);
    SysFreeString(refused);
    EXPECT_TRUE(m_ctrl->hooks.empty());
}

TEST_F(GridAccessibility, HitTestAndLocationAgree) {
    long x, y, w, h;
    int row = RowOf("Count") + 1;
    ASSERT_EQ(m_acc->accLocation(&x, &y, &w, &h, Child(row)), S_OK);
    VARIANT hit;
    ASSERT_EQ(m_acc->accHitTest(x + w / 2, y + h / 2, &hit), S_OK);
    EXPECT_EQ(hit.lVal, row);
}

TEST_F(GridAccessibility, AnObjectOutlivingTheGridFailsGracefully) {
    DestroyWindow(m_frame);
    m_frame = nullptr;
    long count = -1;
    EXPECT_NE(m_acc->get_accChildCount(&count), S_OK);
    BSTR text = nullptr;
    EXPECT_NE(m_acc->get_accName(Child(1), &text), S_OK);
}
