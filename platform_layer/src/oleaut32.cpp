// BSTR and VARIANT of the platform layer.

#include <oleauto.h>

#include <cstdint>
#include <cstring>
#include <new>

extern "C" {

// The byte length sits in the four bytes before the text, and a NUL unit
// follows it, so a BSTR reads as ordinary wide text too.
BSTR SysAllocString(const OLECHAR *text) {
    if (text == nullptr) return nullptr;
    size_t units = 0;
    while (text[units] != 0) ++units;
    const size_t bytes = units * sizeof(OLECHAR);
    char *block = static_cast<char *>(
        ::operator new(sizeof(uint32_t) + bytes + sizeof(OLECHAR), std::nothrow));
    if (block == nullptr) return nullptr;
    const auto length = static_cast<uint32_t>(bytes);
    std::memcpy(block, &length, sizeof length);
    BSTR result = reinterpret_cast<BSTR>(block + sizeof(uint32_t));
    std::memcpy(result, text, bytes);
    result[units] = 0;
    return result;
}

void SysFreeString(BSTR text) {
    if (text == nullptr) return;
    ::operator delete(reinterpret_cast<char *>(text) - sizeof(uint32_t));
}

UINT SysStringLen(BSTR text) {
    if (text == nullptr) return 0;
    uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<char *>(text) - sizeof(uint32_t), sizeof bytes);
    return bytes / sizeof(OLECHAR);
}

void VariantInit(VARIANTARG *variant) {
    if (variant == nullptr) return;
    std::memset(variant, 0, sizeof *variant);
    variant->vt = VT_EMPTY;
}

// Frees what the variant owns (a BSTR, an interface reference) and leaves
// it empty.
HRESULT VariantClear(VARIANTARG *variant) {
    if (variant == nullptr) return E_INVALIDARG;
    if (variant->vt == VT_BSTR) {
        SysFreeString(variant->bstrVal);
    } else if (variant->vt == 13 /* VT_UNKNOWN */ && variant->punkVal != nullptr) {
        variant->punkVal->Release();
    }
    VariantInit(variant);
    return S_OK;
}
}
