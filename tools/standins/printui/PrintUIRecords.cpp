#include "tools/standins/printui/PrintUIRecords.h"

#include "tools/standins/common/Journal.h"

namespace kzp::standins::printui {

std::vector<std::wstring> Commands() {
    return Journal(HKEY_CURRENT_USER, kCommandsKey).Read();
}

void ForgetCommands() {
    Journal(HKEY_CURRENT_USER, kCommandsKey).Remove();
}

}  // namespace kzp::standins::printui
