#pragma once
#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <deque>
#include <functional>

// Answers the modal dialogs a test opens, in order: each step waits for the
// visible modal dialog with its object name and acts on it (usually ends it).
class ModalScript
{
public:
    using Action = std::function<void(QDialog&)>;

    ModalScript()
    {
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start();
    }

    ModalScript& Then(const QString& id, Action action)
    {
        m_steps.push_back({id, std::move(action)});
        return *this;
    }

    // Steps whose dialog never showed.
    int Pending() const { return int(m_steps.size()); }

private:
    void Poll()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (m_steps.empty() || !dialog || !dialog->isVisible() || dialog->objectName() != m_steps.front().first)
            return;
        const Action action = std::move(m_steps.front().second);
        m_steps.pop_front();
        action(*dialog);
    }

    QTimer m_timer;
    std::deque<std::pair<QString, Action>> m_steps;
};
