// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PaintCount.h"
#include "locations/LocationsFixture.h"

namespace {

class GotFocusTest : public LocationsFixture, public testing::WithParamInterface<const char*>
{
};

TEST_P(GotFocusTest, repaintsTheWindow)
{
    const QLatin1String name(GetParam());
    OpenSearch();
    Form& window = forms.Touch(name);
    window.Show();
    // Another window has the focus meanwhile, and all pending paints are done.
    QApplication::setActiveWindow(nullptr);
    QTest::qWait(0);
    window.PaintNow();
    const PaintCount count(name);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &activated);
    EXPECT_EQ(count.paints, 1) << "at once, inside the event";
}

INSTANTIATE_TEST_SUITE_P(Each, GotFocusTest, testing::Values("FrmLocation", "FrmNewLoc", "FrmWait"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
