#pragma once

#include "Platform/Interface/ViewController.h"

namespace Platform
{

enum class AlertActionStyle { Default = 0, Cancel = 1, Destructive = 2 };

struct AlertAction {
    QString title;
    AlertActionStyle style = AlertActionStyle::Default;
    std::function<void()> handler; // runs when the alert is gone; may be null
};

// An alert over a dimmed backdrop, shown with the stock Dialog. To be given to ViewController::present(). Escape and
// the back key choose the cancel action or, when there is no other, the only one.
class AlertController : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QVariantList buttons READ buttons CONSTANT)

public:
    // A null or empty title or message takes no room.
    AlertController(QString title, QString message);
    ~AlertController() override;

    QString title() const { return m_title; }
    QString message() const { return m_message; }

    // Buttons stand in the order in which they are added.
    void addAction(AlertAction action);
    const std::vector<AlertAction> &actions() const { return m_actions; }

    // As a tap on that button: dismisses the alert, then runs the action's handler. Only the first choice counts, and
    // none once the alert is on its way out.
    Q_INVOKABLE void choose(int index);

    bool goBack() override;

protected:
    std::unique_ptr<Transition> makeTransition() override;

private:
    QVariantList buttons() const;

    QString m_title;
    QString m_message;
    std::vector<AlertAction> m_actions;
    bool m_isChosen = false;
};

} // namespace Platform
