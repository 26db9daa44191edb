// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>

namespace support {

/// Calls answer from a zero timer as soon as a modal window is shown, while the code under test is
/// in its exec(). Check wasShown() afterwards. A window that answer leaves open is rejected, so
/// that a failing test ends.
template <typename Window>
class ModalAnswer : public QObject
{
public:
    explicit ModalAnswer(std::function<void(Window&)> answer) : m_answer(std::move(answer))
    {
        m_timer.setInterval(0);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { check(); });
        m_timer.start();
    }

    bool wasShown() const { return m_wasShown; }

private:
    void check()
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
