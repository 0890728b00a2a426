#pragma once
// Windows only: owners for the COM interface pointers and BSTRs that one
// call needs, released when they go out of scope.
#include <windows.h>
#include <ole2.h>

#include <string_view>

// Owns one interface pointer.
template <typename T>
class ComRef {
public:
    ComRef() = default;
    ComRef(const ComRef&) = delete;
    ComRef& operator=(const ComRef&) = delete;
    ~ComRef() {
        if (p_) p_->Release();
    }
    T* get() const { return p_; }
    void reset() {
        if (p_) p_->Release();
        p_ = nullptr;
    }
    T** out() { return &p_; }
    void** outVoid() { return reinterpret_cast<void**>(&p_); }
    T* operator->() const { return p_; }

private:
    T* p_ = nullptr;
};

// Owns one BSTR made from narrow text in the process code page.
class WideText {
public:
    explicit WideText(std::string_view narrow) {
        int size = static_cast<int>(narrow.size());
        int wide = size ? MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, nullptr, 0) : 0;
        text_ = SysAllocStringLen(nullptr, static_cast<UINT>(wide));
        if (text_ && wide) MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, text_, wide);
    }
    WideText(const WideText&) = delete;
    WideText& operator=(const WideText&) = delete;
    ~WideText() { SysFreeString(text_); }
    BSTR get() const { return text_; }

private:
    BSTR text_ = nullptr;
};
