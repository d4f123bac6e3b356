// printingapp KEY: prints a document through the plug-in that stands beside it, and ends. Its registry hives
// are those that a test keeps in KEY\User and KEY\Machine, below the real HKEY_CURRENT_USER. The exit status
// is 0 when the plug-in took every event well.
#include "tools/driverhost/PlugIn.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/standins/common/ScratchRegistry.h"

int wmain(int count, wchar_t** arguments) {
    if (count != 2)
        return 2;
    kzp::standins::ScratchRegistry::Join(arguments[1]);

    const driverhost::PlugIn plugIn;
    const auto outcome = driverhost::PrintDocument(plugIn, nullptr, L"Drawing");
    for (const driverhost::DocumentEventCall& call : outcome.calls) {
        if (call.result != S_OK || call.answer != 1)
            return 1;
    }
    return outcome.calls.size() == 5 ? 0 : 1;  // filter query, device context, and the three events asked for
}
