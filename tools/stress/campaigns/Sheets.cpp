// Document sheets opened, edited at random, and closed with OK and with Cancel.
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

using driverhost::SheetUser;

void Sheets(Run& run) {
    const kzp::test::ScratchRegistry registry;
    SetUpPrinter();
    WarmUpSheets();
    int accepted = 0, refused = 0, cancelled = 0;
    for (run.Begin(run.Either(200, 4), run.Either(12, 2)); run.Next();) {
        driverhost::SheetOptions shape;
        shape.applyButton = !run.Random().OneIn(4);
        shape.extraFirstPage = run.Random().OneIn(4);
        kzp::test::HostedSheet host({}, shape);
        const QuietShell shell(host.plugIn.Module());
        const Ending ending = run.Iteration() % 2 ? Ending::kCancel : Ending::kOk;
        const auto closed = PlaySheet(
            host,
            [&](SheetUser& user) {
                for (int edit = 0; edit < 12; ++edit) {
                    run.Doing(L"edit %d", edit);
                    EditAtRandom(user, run.Random());
                }
                run.Doing(L"closing");
            },
            ending);
        run.Expect(closed.has_value(), L"the sheet does not open");
        refused += host.sheet.Refused();
        ++(closed == CPSUI_OK ? accepted : cancelled);
        run.Tried();
        run.Figures(L"sheets: %d OK, %d cancelled, %d commits refused", accepted, cancelled, refused);
    }
}

}  // namespace stress
