// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowViews.h"
#include "forms/Boxes.h"

#include <QApplication>
#include <QPushButton>
#include <QStyleOptionButton>

#include <cstdlib>
#include <optional>
#include <set>

namespace {

/// Where the caption of a group box begins.
constexpr int kCaptionLeft = 8;

std::string NameOf(const QWidget& control)
{
    return control.objectName().toStdString();
}

bool IsFrame(const QWidget& widget)
{
    return qobject_cast<const QGroupBox*>(&widget) != nullptr ||
           widget.metaObject() == &QFrame::staticMetaObject;
}

/// Runs @p work on each visible child that has a name, and on those of its frames.
void ForEachControl(const QWidget& parent, const std::function<void(const QWidget&)>& work)
{
    for (const QWidget* const child : parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!child->isVisible() || child->isWindow()) {
            continue;
        }
        work(*child);
        if (IsFrame(*child)) {
            ForEachControl(*child, work);
        }
    }
}

/// The rectangle of the text in a check box or an option; all of any other button.
QRect TextRect(const QAbstractButton& button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    const QStyle& style = *button.style();
    if (qobject_cast<const QCheckBox*>(&button) != nullptr) {
        return style.subElementRect(QStyle::SE_CheckBoxContents, &option, &button);
    }
    if (qobject_cast<const QRadioButton*>(&button) != nullptr) {
        return style.subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
    }
    return button.rect();
}

/// The vertical position, in the parent, of the baseline of a control's text; empty without text, and for
/// texts that are not in the middle of their label.
std::optional<double> Baseline(const QWidget& control)
{
    const QFontMetrics metrics = control.fontMetrics();
    QRect place = control.rect();
    if (const auto* const label = qobject_cast<const QLabel*>(&control); label != nullptr) {
        if (label->text().isEmpty() || label->wordWrap() || (label->alignment() & Qt::AlignTop) != 0) {
            return {};
        }
    } else if (const auto* const button = qobject_cast<const QAbstractButton*>(&control); button != nullptr) {
        place = TextRect(*button);
    } else if (qobject_cast<const QLineEdit*>(&control) == nullptr) {
        return {};
    }
    return control.y() + place.top() + (place.height() - metrics.height()) / 2.0 + metrics.ascent();
}

/// The columns, in the parent, in which a control and its text begin.
std::vector<int> Columns(const QWidget& control)
{
    std::vector<int> columns{control.x()};
    if (qobject_cast<const QGroupBox*>(control.parentWidget()) != nullptr) {
        columns.push_back(kCaptionLeft);
    }
    const auto* const button = qobject_cast<const QAbstractButton*>(&control);
    if (button != nullptr && qobject_cast<const QPushButton*>(&control) == nullptr) {
        columns.push_back(control.x() + TextRect(*button).left());
    }
    return columns;
}

void ExpectTextFits(const QWidget& control)
{
    const QFontMetrics metrics = control.fontMetrics();
    if (const auto* const label = qobject_cast<const QLabel*>(&control); label != nullptr) {
        const QRect needed = metrics.boundingRect(QRect(0, 0, label->width(), 0),
                                                  label->wordWrap() ? Qt::TextWordWrap : 0, label->text());
        EXPECT_LE(needed.width(), label->width()) << NameOf(control);
        EXPECT_LE(needed.height(), label->height()) << NameOf(control);
    } else if (const auto* const button = qobject_cast<const QAbstractButton*>(&control); button != nullptr) {
        const QSize needed = metrics.size(Qt::TextShowMnemonic, button->text());
        EXPECT_LE(TextRect(*button).left() + needed.width(), button->width()) << NameOf(control);
        EXPECT_LE(needed.height(), button->height()) << NameOf(control);
    } else if (const auto* const frame = qobject_cast<const QGroupBox*>(&control); frame != nullptr) {
        EXPECT_LE(metrics.size(Qt::TextShowMnemonic, frame->title()).width() + kCaptionLeft, frame->width())
            << NameOf(control);
    }
}

void ExpectAllInside(const QWidget& window)
{
    ForEachControl(window, [](const QWidget& control) {
        EXPECT_TRUE(control.parentWidget()->rect().contains(control.geometry())) << NameOf(control);
        ExpectTextFits(control);
    });
}

/// Runs @p work on each pair of controls of one parent.
void ForEachPair(const QWidget& window, const std::function<void(const QWidget&, const QWidget&)>& work)
{
    ForEachControl(window, [&](const QWidget& left) {
        ForEachControl(*left.parentWidget(), [&](const QWidget& right) {
            if (&left < &right && left.parentWidget() == right.parentWidget()) {
                work(left, right);
            }
        });
    });
}

/// The rectangle, in the parent, of a label's text or of any other control.
QRect OccupiedRect(const QWidget& control)
{
    const auto* const label = qobject_cast<const QLabel*>(&control);
    if (label == nullptr || label->text().isEmpty()) {
        return control.geometry();
    }
    const int flags = static_cast<int>(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
    return label->fontMetrics()
        .boundingRect(label->contentsRect(), flags, label->text())
        .translated(label->pos());
}

/// One of the lines of the prayer page, which meet.
bool IsLine(const QWidget& control)
{
    return control.objectName().startsWith(u"Line");
}

class WindowLayout : public WindowViews
{
};

} // namespace

TEST_F(WindowLayout, textsAndControls_lieInsideTheirWindow)
{
    ForEachView([](QWidget& window) { ExpectAllInside(window); });
}

TEST_F(WindowLayout, smallestSize_holdsTheLayout)
{
    ForEachView([](QWidget& window) {
        window.resize(1, 1);
        Desk::Settle();
        ExpectAllInside(window);
    });
}

TEST_F(WindowLayout, controls_doNotOverlap)
{
    ForEachView([](QWidget& window) {
        ForEachPair(window, [](const QWidget& left, const QWidget& right) {
            EXPECT_TRUE(IsLine(left) || IsLine(right) || !OccupiedRect(left).intersects(OccupiedRect(right)))
                << NameOf(left) << " and " << NameOf(right);
        });
    });
}

TEST_F(WindowLayout, textsOfARow_standOnOneLine)
{
    ForEachView([](QWidget& window) {
        ForEachPair(window, [](const QWidget& left, const QWidget& right) {
            const std::optional<double> one = Baseline(left);
            const std::optional<double> other = Baseline(right);
            if (one && other && std::abs(*one - *other) <= 3.0) {
                EXPECT_EQ(*one, *other) << NameOf(left) << " and " << NameOf(right);
            }
        });
    });
}

TEST_F(WindowLayout, controlsOfAColumn_beginTogether)
{
    ForEachView([](QWidget& window) {
        ForEachPair(window, [](const QWidget& left, const QWidget& right) {
            for (const int one : Columns(left)) {
                for (const int other : Columns(right)) {
                    EXPECT_TRUE(one == other || std::abs(one - other) > 3)
                        << NameOf(left) << ' ' << one << " and " << NameOf(right) << ' ' << other;
                }
            }
        });
    });
}

TEST_F(WindowLayout, textsOfCheckBoxesAndOptions_beginAtOneDistance)
{
    std::set<int> distances;
    ForEachView([&distances](QWidget& window) {
        for (const auto* const button : window.findChildren<QAbstractButton*>()) {
            if (button->isCheckable()) {
                distances.insert(TextRect(*button).left());
            }
        }
    });
    EXPECT_EQ(distances.size(), 1U);
}

// The font of a system without the usual one.
TEST_F(WindowLayout, wideFont_isNarrowedUntilTextsFit)
{
    const QFont usual = QApplication::font();
    EXPECT_EQ(usual.stretch(), QFont::AnyStretch);
    QApplication::setFont(WindowFont(QStringLiteral("DejaVu Sans")));
    ASSERT_EQ(QFontInfo(QApplication::font()).family(), u"DejaVu Sans");
    ForEachView([](QWidget& window) { ExpectAllInside(window); });
    QApplication::setFont(usual);
}
