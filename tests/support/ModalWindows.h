// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

namespace support {

/// Calls answer once the next modal window is up, from a zero timer, while the code under test
/// sits in its exec(). A window that does not appear leaves wasShown() false; check it.
/// If answer leaves the window open, it is rejected, so that a failing test ends.
template <typename Window>
class ModalAnswer : public QObject
{
public:
    explicit ModalAnswer(std::function<void(Window&)> answer) : m_answer(std::move(answer))
    {
        m_timer.setInterval(0);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
        m_timer.start();
    }

    bool wasShown() const { return m_wasShown; }

private:
    void look()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal == nullptr) {
            return;
        }
        m_timer.stop();
        if (auto* window = dynamic_cast<Window*>(modal)) {
            m_wasShown = true;
            m_answer(*window);
        }
        if (auto* dialog = qobject_cast<QDialog*>(modal);
            dialog != nullptr && dialog->isVisible()) {
            dialog->reject();
        }
    }

    std::function<void(Window&)> m_answer;
    QTimer m_timer;
    bool m_wasShown = false;
};

} // namespace support
