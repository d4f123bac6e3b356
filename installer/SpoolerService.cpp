#include "installer/SpoolerService.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "installer/InstallerLog.h"

namespace kzp {

namespace {

constexpr wchar_t kSpoolerName[] = L"Spooler";
// The access mask is the manager's "everything", which is more than any service grants by name.
constexpr DWORD kSpoolerAccess = SC_MANAGER_ALL_ACCESS;
constexpr DWORD kStopMilliseconds = 2000;
constexpr DWORD kStartMilliseconds = 1000;
constexpr int kStartAttempts = 5;

// The service's state in a block of the size that the service manager asks for, or null with the last error
// set.
std::unique_ptr<BYTE[]> QueryStatus(SC_HANDLE service) {
    DWORD bytes = 0;
    QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, nullptr, 0, &bytes);
    auto status = std::make_unique<BYTE[]>(std::max<size_t>(bytes, sizeof(SERVICE_STATUS_PROCESS)));
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, status.get(), bytes, &bytes)) {
        const DWORD error = GetLastError();
        status.reset();
        SetLastError(error);
    }
    return status;
}

bool IsRunning(const BYTE* status) {
    // Through a volatile pointer, so that the compiler can neither foresee nor drop a read through null.
    const auto* const volatile record = reinterpret_cast<const SERVICE_STATUS_PROCESS*>(status);
    return record->dwCurrentState == SERVICE_RUNNING;
}

}  // namespace

SpoolerService StopSpooler() {
    SpoolerService spooler;
    spooler.manager.Reset(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!spooler.manager)
        return spooler;
    spooler.service.Reset(OpenServiceW(spooler.manager.Get(), kSpoolerName, kSpoolerAccess));
    if (!spooler.service) {
        spooler.manager.Reset();
        return spooler;
    }
    SERVICE_STATUS status = {};
    ControlService(spooler.service.Get(), SERVICE_CONTROL_STOP, &status);
    Sleep(kStopMilliseconds);
    return spooler;
}

void StartSpoolerAndWait(MSIHANDLE hInstall, SpoolerService stopped) {
    const SC_HANDLE service = stopped.service.Get();
    if (!service)
        return;
    StartServiceW(service, 0, nullptr);  // fails when it runs already, which is just as well

    std::unique_ptr<BYTE[]> lastStatus;
    for (int attempt = 1; attempt <= kStartAttempts; ++attempt) {
        auto status = QueryStatus(service);
        if (!status) {
            LogInstallError(hInstall,
                            L"ERROR: Failed to query service status in function QueryServiceStatusEx. "
                            L"The Error Code is:[1]\n",
                            GetLastError());
            continue;
        }
        lastStatus = std::move(status);
        if (IsRunning(lastStatus.get())) {
            LogInstallMessage(hInstall, L"INFO: Printer Spooler service is restarted");
            break;
        }
        if (attempt < kStartAttempts)
            Sleep(kStartMilliseconds);
    }

    // Deliberately unchecked: without a single successful query this reads through null and ends the action.
    if (!IsRunning(lastStatus.get()))
        LogInstallMessage(hInstall, L"ERROR: Failed to start Printer Spooer Service!");
}

void RestartSpooler(MSIHANDLE hInstall) {
    StartSpoolerAndWait(hInstall, StopSpooler());
}

}  // namespace kzp
