// A channel's row that writes down what it is told; what its click does is the test's business.
#pragma once

#include "device/clsKeldoX.h"
#include "support/FakeViews.h"

#include <functional>

class FakeChannelRow : public ChannelRow
{
public:
    explicit FakeChannelRow(int row, CallRecord record = std::make_shared<QStringList>())
        : number(row), calls(std::move(record))
    {
    }

    void InitChannel() override { note("InitChannel"); }
    void setIndex(std::int16_t value) override { note("setIndex", QString::number(value)); }
    void setChannelNumber(std::int16_t value) override
    {
        note("setChannelNumber", QString::number(value));
    }
    std::shared_ptr<clsKeldoX> Device() const override { return mDevice; }
    void setDevice(std::shared_ptr<clsKeldoX> unit) override
    {
        mDevice = std::move(unit);
        note("setDevice", mDevice ? QStringLiteral("unit") : QStringLiteral("none"));
    }
    int ComPortNumber() const override { return mDevice ? mDevice->commPort()->PortNumber() : 0; }
    void setComPortNumber(int value) override
    {
        mDevice->commPort()->setPortNumber(static_cast<std::int16_t>(value));
        note("setComPortNumber", QString::number(value));
    }
    void setExists(bool value) override
    {
        exists = value;
        note("setExists", value ? QStringLiteral("True") : QStringLiteral("False"));
    }
    void showPort(const QString &caption, const QString &toolTip, const QString &text) override
    {
        note("showPort", QStringLiteral("<%1> <%2> <%3>").arg(caption, toolTip, text));
    }
    void setStatus(int value) override
    {
        status = value;
        note("setStatus", QString::number(value));
    }
    void optPortNumClick() override
    {
        note("optPortNumClick");
        if (onClick)
            onClick(*this);
    }
    void ShowControls() override { note("ShowControls"); }
    void readAgain() override { note("readAgain"); }
    void DisableControls() override
    {
        note("DisableControls");
        if (onDisable)
            onDisable(*this);
    }
    void HideControls() override { note("HideControls"); }

    const int number;
    CallRecord calls; // "row3.setIndex 3"
    std::shared_ptr<clsKeldoX> mDevice;
    int status = 0;
    bool exists = false;
    std::function<void(FakeChannelRow &)> onClick;
    std::function<void(FakeChannelRow &)> onDisable;

private:
    void note(const char *call, const QString &argument = {})
    {
        const QString words = argument.isEmpty() ? QString() : QLatin1Char(' ') + argument;
        calls->append(QStringLiteral("row%1.%2").arg(number).arg(QLatin1String(call)) + words);
    }
};
