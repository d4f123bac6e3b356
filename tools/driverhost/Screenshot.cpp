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

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

// The class id of GDI+'s PNG encoder.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

// Lets windows that wait for their turn paint themselves.
void PaintEverything(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_FRAME);
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE))
        DispatchMessageW(&message);
    GdiFlush();
}

Gdiplus::Status Save(const RECT& area, const std::wstring& path) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    Gdiplus::Bitmap bitmap(width, height, PixelFormat24bppRGB);
    {
        Gdiplus::Graphics graphics(&bitmap);
        const HDC target = graphics.GetHDC();
        const HDC screen = GetDC(nullptr);
        BitBlt(target, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
        ReleaseDC(nullptr, screen);
        graphics.ReleaseHDC(target);
    }
    return bitmap.Save(path.c_str(), &kPngEncoder, nullptr);
}

}  // namespace

void SaveScreenshot(HWND window, const std::wstring& path) {
    PaintEverything(window);
    RECT area = {};
    GetWindowRect(window, &area);
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::Status status = Gdiplus::GdiplusStartup(&token, &input, nullptr);
    if (status == Gdiplus::Ok) {
        status = Save(area, path);
        Gdiplus::GdiplusShutdown(token);
    }
    if (status != Gdiplus::Ok)
        throw HostError{Format(L"cannot write %ls (GDI+ status %d)", path.c_str(), static_cast<int>(status))};
}

}  // namespace driverhost
