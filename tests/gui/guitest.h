#pragma once
// Helpers of the widget tests: answers to the modal dialog or pop-up menu an action is about to
// open, and elements found by name.

#include <QtTest>
#include <QtWidgets>

#include <functional>
#include <memory>
#include <type_traits>

#include "facebutton.h"
#include "frmskincreator.h"
#include "qtplatform.h"

namespace skin::testing {

// Polls the event loop (also a modal exec's or a menu's nested loop) until `act` reports that it
// handled what it waited for; gives up after 5 s, so a missing dialog fails the test.
inline void WhenReady(std::function<bool()> act)
{
    auto* poll = new QTimer(qApp);
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act, started] {
        if (act() || started->elapsed() > 5000) {
            poll->stop();
            poll->deleteLater();
        }
    });
    poll->start(10);
}

template <typename Dialog = QWidget>
void AnswerModal(std::type_identity_t<std::function<void(Dialog*)>> act)
{
    WhenReady([act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible()) return false;
        act(dialog);
        return !dialog->isVisible();
    });
}

// The next pop-up menu picks the named item with the keyboard; an empty name dismisses it.
inline void AnswerMenu(const QString& itemName, std::function<void(QMenu*)> check = {})
{
    WhenReady([itemName, check] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return false;
        if (check) check(menu);
        if (!itemName.isEmpty()) menu->setActiveAction(menu->findChild<QAction*>(itemName));
        QTest::keyClick(menu, itemName.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        return !menu->isVisible();
    });
}

// selectFile leaves a focused name field alone, so the path is typed into the field itself.
inline void AcceptFile(QFileDialog* dialog, const QString& path)
{
    dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
    QMetaObject::invokeMethod(dialog, "accept");
}

template <typename T = QWidget>
T* Child(const QObject* parent, const char* name)
{
    T* found = parent->findChild<T*>(QString::fromUtf8(name));
    if (found == nullptr) qWarning("no element %s", name);
    return found;
}

}  // namespace skin::testing
