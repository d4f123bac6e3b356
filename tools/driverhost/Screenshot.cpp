#include "tools/driverhost/Screenshot.h"

#include <objidl.h>

// GDI+ uses the macros that NOMINMAX takes away. NOLINTBEGIN(misc-unused-using-decls)
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
// NOLINTEND(misc-unused-using-decls)
#include <gdiplus.h>

#include "support/UniqueHandle.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

// The class id of GDI+'s PNG encoder.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

struct BitmapTraits {
    using Type = HBITMAP;
    static Type Empty() { return nullptr; }
    static void Close(Type bitmap) { DeleteObject(bitmap); }
};
using UniqueBitmap = kzp::UniqueHandle<BitmapTraits>;

struct MemoryDcTraits {
    using Type = HDC;
    static Type Empty() { return nullptr; }
    static void Close(Type dc) { DeleteDC(dc); }
};
using UniqueMemoryDc = kzp::UniqueHandle<MemoryDcTraits>;

class ScreenDc {
  public:
    ScreenDc() : m_dc(GetDC(nullptr)) {}
    ~ScreenDc() { ReleaseDC(nullptr, m_dc); }
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    HDC Get() const { return m_dc; }

  private:
    HDC m_dc;
};

class GdiPlus {
  public:
    GdiPlus() {
        const Gdiplus::GdiplusStartupInput input;
        m_status = Gdiplus::GdiplusStartup(&m_token, &input, nullptr);
    }
    ~GdiPlus() {
        if (m_status == Gdiplus::Ok)
            Gdiplus::GdiplusShutdown(m_token);
    }
    GdiPlus(const GdiPlus&) = delete;
    GdiPlus& operator=(const GdiPlus&) = delete;
    bool Started() const { return m_status == Gdiplus::Ok; }

  private:
    ULONG_PTR m_token = 0;
    Gdiplus::Status m_status = Gdiplus::GenericError;
};

// Lets windows that wait for their turn paint themselves.
void PaintEverything(HWND window) {
    if (window)
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_FRAME);
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE))
        DispatchMessageW(&message);
    GdiFlush();
}

RECT AreaOf(HWND window) {
    RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (window)
        GetWindowRect(window, &area);
    return area;
}

UniqueBitmap Capture(const RECT& area) {
    const ScreenDc screen;
    const UniqueMemoryDc memory(CreateCompatibleDC(screen.Get()));
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    UniqueBitmap bitmap(CreateCompatibleBitmap(screen.Get(), width, height));
    const HGDIOBJ old = SelectObject(memory.Get(), bitmap.Get());
    BitBlt(memory.Get(), 0, 0, width, height, screen.Get(), area.left, area.top, SRCCOPY);
    SelectObject(memory.Get(), old);
    return bitmap;
}

}  // namespace

void SaveScreenshot(HWND window, const std::wstring& path) {
    PaintEverything(window);
    const UniqueBitmap picture = Capture(AreaOf(window));
    const GdiPlus gdiPlus;
    if (!gdiPlus.Started())
        throw HostError{L"GDI+ does not start: no PNG can be written"};
    Gdiplus::Bitmap bitmap(picture.Get(), nullptr);
    const Gdiplus::Status status = bitmap.Save(path.c_str(), &kPngEncoder, nullptr);
    if (status != Gdiplus::Ok)
        throw HostError{Format(L"cannot write %ls (GDI+ status %d)", path.c_str(), static_cast<int>(status))};
}

}  // namespace driverhost
