// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/NewLocControls.h"

#include "forms/Boxes.h"
#include "forms/LinkLabel.h"
#include "forms/ListBox.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kMargin = 12;
constexpr int kGap = kMargin / 2;
// Wide enough for the longest caption of either search, so that the fields of both stand in one column.
constexpr int kCaptionWidth = 150;

template <typename Control>
Control* Named(Control* control, const char* name)
{
    control->setObjectName(QLatin1String(name));
    return control;
}

QLabel* Text(QWidget& parent, const char* name, const QString& caption)
{
    auto* const label = Named(new QLabel(caption, &parent), name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QGridLayout* SearchGrid(QGroupBox* frame)
{
    auto* const grid = new QGridLayout(frame);
    grid->setContentsMargins(kMargin, kGap, kMargin, kMargin);
    grid->setHorizontalSpacing(kMargin);
    grid->setVerticalSpacing(kGap);
    grid->setColumnMinimumWidth(0, kCaptionWidth);
    grid->setColumnStretch(1, 1);
    return grid;
}

} // namespace

NewLocControls::NewLocControls(QWidget& window)
{
    BuildZipSearch(window);
    BuildCitySearch(window);
    BuildResults(window);
    BuildFoot(window);

    auto* const foot = new QHBoxLayout;
    foot->setSpacing(kGap);
    foot->addWidget(LblStatus);
    foot->addWidget(ProgressBar1, 1);
    foot->addStretch();
    foot->addWidget(CmdAdd);
    foot->addWidget(CmdCancel);

    auto* const column = new QVBoxLayout(&window);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kGap);
    column->addWidget(FrmSearch);
    column->addWidget(Frame1);
    column->addSpacing(kGap);
    column->addWidget(Label1);
    column->addWidget(LstSearchResults, 1);
    column->addLayout(foot);
}

void NewLocControls::BuildZipSearch(QWidget& window)
{
    FrmSearch = Named(new QGroupBox(QStringLiteral("USA / Canada"), &window), "FrmSearch");
    Label2 = Text(*FrmSearch, "Label2", QStringLiteral("Enter Zip Code: "));
    TxtZipCode = Named(new TextBox(FrmSearch), "TxtZipCode");
    TxtZipCode->setAccessibleName(QStringLiteral("Zip Code"));
    LblGetLink = Named(new LinkLabel(FrmSearch), "LblGetLink");
    LblGetLink->setText(QStringLiteral("Lookup"));
    LblGetLink->setAccessibleDescription(QStringLiteral("Search by zip code"));

    auto* const grid = SearchGrid(FrmSearch);
    grid->addWidget(Label2, 0, 0);
    grid->addWidget(TxtZipCode, 0, 1);
    grid->addWidget(LblGetLink, 0, 2);
}

void NewLocControls::BuildCitySearch(QWidget& window)
{
    Frame1 = Named(new QGroupBox(QStringLiteral("Other Countries"), &window), "Frame1");
    Label3 = Text(*Frame1, "Label3", QStringLiteral("Select Country/State:"));
    CombState = Named(new QComboBox(Frame1), "CombState");
    CombState->setAccessibleName(QStringLiteral("Country or State"));
    // The names come from the service: neither their number nor their length may shape the window.
    CombState->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    CombState->setMinimumContentsLength(1);
    Label4 = Text(*Frame1, "Label4", QStringLiteral("City Name (2 characters):"));
    TxtCity = Named(new TextBox(Frame1), "TxtCity");
    TxtCity->setAccessibleName(QStringLiteral("City Name"));
    LblGet2Link = Named(new LinkLabel(Frame1), "LblGet2Link");
    LblGet2Link->setText(QStringLiteral("Lookup"));
    LblGet2Link->setAccessibleDescription(QStringLiteral("Search by country and city name"));

    auto* const grid = SearchGrid(Frame1);
    grid->addWidget(Label3, 0, 0);
    grid->addWidget(CombState, 0, 1);
    grid->addWidget(Label4, 1, 0);
    grid->addWidget(TxtCity, 1, 1);
    grid->addWidget(LblGet2Link, 1, 2);
}

void NewLocControls::BuildResults(QWidget& window)
{
    Label1 = Text(window, "Label1", QStringLiteral("City Search Results:"));
    LstSearchResults = Named(new ListBox(&window), "LstSearchResults");
    LstSearchResults->setAccessibleName(QStringLiteral("City Search Results"));
}

void NewLocControls::BuildFoot(QWidget& window)
{
    ProgressBar1 = Named(new QProgressBar(&window), "ProgressBar1");
    ProgressBar1->setRange(0, 100);
    // A figure would promise to tell how far the work has come.
    ProgressBar1->setTextVisible(false);
    ProgressBar1->setAccessibleName(QStringLiteral("Search Progress"));
    ProgressBar1->hide();
    LblStatus = Text(window, "LblStatus", QString());
    LblStatus->hide();
    CmdAdd = Named(new QPushButton(QStringLiteral("Add"), &window), "CmdAdd");
    CmdCancel = Named(new QPushButton(QStringLiteral("Cancel"), &window), "CmdCancel");
    CmdAdd->setAutoDefault(true);
    CmdCancel->setAutoDefault(true);
}
