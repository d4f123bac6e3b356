// What programs ask of a printer's driver through the spooler. There is no driver behind these printers: a
// device mode is the printer's default one or the caller's, and the capabilities are those of a plain sheet
// printer with the machine's forms.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Forms.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Queues.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

constexpr size_t kPaperNameLength = 64;  // characters of each name that DC_PAPERNAMES hands out

std::vector<BYTE> DefaultDeviceMode(const Queue& queue) {
    return queue.deviceMode.empty() ? PlainDeviceMode(queue.name) : queue.deviceMode;
}

// The printer of an open handle, or without one the printer of that name: the common dialogs ask so.
DWORD FindQueue(HANDLE handle, const wchar_t* name, std::optional<Queue>& queue) {
    std::wstring printer;
    if (!handle && !IsEmpty(name)) {
        queue = LoadQueue(name);
        return queue ? ERROR_SUCCESS : ERROR_INVALID_PRINTER_NAME;
    }
    if (const DWORD error = FindPrinter(handle, false, printer))
        return error;
    queue = LoadQueue(printer);
    return queue ? ERROR_SUCCESS : ERROR_PRINTER_DELETED;
}

// `result` becomes the size of the device mode, or IDOK when one was handed out. A prompt is answered at
// once, as if the user had agreed to what stands there.
DWORD HandOutDeviceMode(const Queue& queue, DEVMODEW* output, const DEVMODEW* input, DWORD mode,
                        LONG& result) {
    std::vector<BYTE> deviceMode = DefaultDeviceMode(queue);
    if (mode == 0) {
        result = static_cast<LONG>(deviceMode.size());
        return ERROR_SUCCESS;
    }
    if (input && (mode & DM_IN_BUFFER)) {
        // Never longer than what the size question promised.
        const auto given = DeviceModeBytes(input);
        if (!given)
            return ERROR_INVALID_PARAMETER;
        if (given->size() == deviceMode.size())
            deviceMode = *given;
    }
    if (mode & DM_OUT_BUFFER) {
        if (!output)
            return ERROR_INVALID_PARAMETER;
        std::memcpy(output, deviceMode.data(), deviceMode.size());
    }
    result = IDOK;
    return ERROR_SUCCESS;
}

// One element of an answer that is a list.
void PutForm(WORD capability, const Form& form, size_t index, wchar_t* output) {
    if (capability == DC_PAPERS) {
        reinterpret_cast<WORD*>(output)[index] = static_cast<WORD>(form.paper ? form.paper : DMPAPER_USER);
    } else if (capability == DC_PAPERSIZE) {
        reinterpret_cast<POINT*>(output)[index] = {form.size.cx / 100, form.size.cy / 100};
    } else {
        wchar_t* const name = output + index * kPaperNameLength;
        std::wmemset(name, L'\0', kPaperNameLength);
        std::wcsncpy(name, form.name.c_str(), kPaperNameLength - 1);
    }
}

DWORD Capability(const Queue& queue, WORD capability, wchar_t* output, DWORD& result) {
    DEVMODEW head{};
    const std::vector<BYTE> deviceMode = DefaultDeviceMode(queue);
    std::memcpy(&head, deviceMode.data(), std::min(deviceMode.size(), sizeof head));
    switch (capability) {
        case DC_FIELDS:
            result = head.dmFields;
            return ERROR_SUCCESS;
        case DC_VERSION:
            result = head.dmSpecVersion;
            return ERROR_SUCCESS;
        case DC_DRIVER:
            result = head.dmDriverVersion;
            return ERROR_SUCCESS;
        case DC_SIZE:
            result = head.dmSize;
            return ERROR_SUCCESS;
        case DC_EXTRA:
            result = head.dmDriverExtra;
            return ERROR_SUCCESS;
        case DC_COPIES:
            result = 1;
            return ERROR_SUCCESS;
        case DC_ORIENTATION:
            result = 90;
            return ERROR_SUCCESS;
        case DC_PAPERS:
        case DC_PAPERSIZE:
        case DC_PAPERNAMES: {
            const std::vector<Form> forms = AllForms();
            for (size_t index = 0; output && index < forms.size(); ++index)
                PutForm(capability, forms[index], index, output);
            result = static_cast<DWORD>(forms.size());
            return ERROR_SUCCESS;
        }
        default:
            return ERROR_NOT_SUPPORTED;
    }
}

}  // namespace

extern "C" {

LONG WINAPI DocumentPropertiesW(HWND, HANDLE printer, LPWSTR name, PDEVMODEW output, PDEVMODEW input,
                                DWORD mode) {
    LONG result = -1;
    Succeeded(Answer(L"DocumentPropertiesW", [&] {
        std::optional<Queue> queue;
        const DWORD error = FindQueue(printer, name, queue);
        return error != ERROR_SUCCESS ? error : HandOutDeviceMode(*queue, output, input, mode, result);
    }));
    return result;
}

int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR, WORD capability, LPWSTR output, const DEVMODEW*) {
    DWORD result = static_cast<DWORD>(-1);
    Succeeded(Answer(L"DeviceCapabilitiesW", [&]() -> DWORD {
        const auto queue = IsEmpty(device) ? std::nullopt : LoadQueue(device);
        return queue ? Capability(*queue, capability, output, result) : DWORD{ERROR_INVALID_PRINTER_NAME};
    }));
    return static_cast<int>(result);
}

}  // extern "C"
