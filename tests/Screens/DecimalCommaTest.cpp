// Where the comma is decimal: numbers are shown and typed with it where the windows follow the language of the user,
// and nothing else changes. Run twice: with the C library's locale as it is, and with that of such a user.

#include <clocale>
#include <cstdlib>

#include "Backends/Simulation/SimulationTest.h"
#include "GenBrowser/DeviceBrowser.h"
#include "LxGUI/GenBrowser/QDoubleSpinBoxExact.h"
#include "LxGUI/RegisterInterface/HexField.h"

namespace
{

class DecimalComma : public SimulationTest
{
protected:
    void SetUp() override
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        if (std::getenv("LOCPATH")) {
            ASSERT_STREQ(std::localeconv()->decimal_point, ",") << "the application takes the locale of the user";
        }
        mDevice = ConnectCamera();
        ASSERT_NE(mDevice, nullptr);
    }
    void TearDown() override { QLocale::setDefault(mBefore); }

    LxGenParameterArray *Parameters() { return mDevice->GetParameters(); }
    double Real(const char *aName)
    {
        double value = 0;
        EXPECT_TRUE(dynamic_cast<LxGenFloat *>(Parameters()->Get(aName))->GetValue(value).IsOK()) << aName;
        return value;
    }
    int64_t Integer(const char *aName)
    {
        int64_t value = 0;
        EXPECT_TRUE(Parameters()->GetIntegerValue(aName, value).IsOK()) << aName;
        return value;
    }
    /// All float features that can be read and do not change by themselves, with their values as the device's library
    /// gives them.
    std::map<std::string, double> AllReals()
    {
        std::map<std::string, double> values;
        for (uint32_t i = 0; i < Parameters()->GetCount(); ++i) {
            LxString name;
            (*Parameters())[i]->GetName(name);
            double value = 0;
            auto *number = dynamic_cast<LxGenFloat *>((*Parameters())[i]);
            if (name.GetString() != "DeviceTemperature" && number && number->IsReadable() &&
                number->GetValue(value).IsOK()) {
                values[name.GetString()] = value;
            }
        }
        return values;
    }

    const QLocale mBefore;
    std::unique_ptr<LxDevice> mDevice;
};

TEST_F(DecimalComma, FloatsAreShownAndTypedWithIt)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    browser.Enter<QDoubleSpinBox>("SimFloat", QStringLiteral("40,25"));
    EXPECT_EQ(Real("SimFloat"), 40.25);
    EXPECT_TRUE(browser.Value("SimFloat").startsWith(QStringLiteral("40,25 ")))
        << browser.Value("SimFloat").toStdString();
}

TEST_F(DecimalComma, APointIsNotLeftOut)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    browser.Enter<QDoubleSpinBox>("SimFloat", QStringLiteral("20"));
    browser.Enter<QDoubleSpinBox>("SimFloat", QStringLiteral("1.5"));
    EXPECT_EQ(Real("SimFloat"), 20) << "what is no number changes nothing";
}

TEST_F(DecimalComma, IntegersAddressesAndHexadecimalNumbersAreAsEver)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    browser.Enter<QSpinBox64>("SimIntegerStep", QStringLiteral("1000"));
    EXPECT_EQ(Integer("SimIntegerStep"), 1000);
    EXPECT_EQ(browser.Value("SimIntegerStep"), QStringLiteral("1000 px"));
    browser.Enter<QSpinBox64>("SimIntegerHex", QStringLiteral("1Fh"));
    EXPECT_EQ(Integer("SimIntegerHex"), 0x1F);
    EXPECT_EQ(browser.Value("SimIntegerHex"), QStringLiteral("0x1f "));
    browser.Enter<QLineEdit>("GevPersistentIPAddress", QStringLiteral("192.168.0.7"));
    EXPECT_EQ(Integer("GevPersistentIPAddress"), 0xC0A80007);
    EXPECT_EQ(browser.Value("GevPersistentIPAddress"), QStringLiteral("192.168.0.7"));
    uint32_t value = 0;
    EXPECT_TRUE(ParseHexField(QStringLiteral("0xab"), value));
    EXPECT_EQ(value, 0xABu);
    EXPECT_EQ(FormatHexField(0x1000), QStringLiteral("00001000"));
}

TEST_F(DecimalComma, TheDevicesNumbersAreTheSame)
{
    const std::map<std::string, double> values = AllReals();
    EXPECT_GT(values.size(), 5u);
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    mDevice.reset();
    mDevice = ConnectCamera();
    ASSERT_NE(mDevice, nullptr);
    EXPECT_EQ(AllReals(), values);
    std::setlocale(LC_ALL, before.c_str());
}

TEST(FloatEditor, TakesOnlyNumbersAsTheLocaleWritesThem)
{
    struct
    {
        QLocale mLocale;
        const char *mText;
        QValidator::State mState;
        double mValue;
    } const cases[] = {
        {QLocale::c(), "1.5", QValidator::Acceptable, 1.5},
        {QLocale(QLocale::German), "1,5", QValidator::Acceptable, 1.5},
        {QLocale(QLocale::German), "1.5", QValidator::Intermediate, 0},
        {QLocale(QLocale::German), "1.500", QValidator::Acceptable, 1500},
        {QLocale(QLocale::German), "1.500,25", QValidator::Acceptable, 1500.25},
        {QLocale(QLocale::German), "-0,25", QValidator::Acceptable, -0.25},
        {QLocale(QLocale::German), "2e3", QValidator::Acceptable, 2000},
        {QLocale(QLocale::English), "1,5", QValidator::Intermediate, 0},
        {QLocale(QLocale::English), "1,500", QValidator::Acceptable, 1500},
        {QLocale(QLocale::English), "1.5", QValidator::Acceptable, 1.5},
    };
    for (const auto &[locale, text, state, value] : cases) {
        QDoubleSpinBoxExact box;
        box.setLocale(locale);
        box.Set(-1e6, 1e6, 0);
        QString typed = QString::fromLatin1(text);
        int position = static_cast<int>(typed.size());
        EXPECT_EQ(box.validate(typed, position), state) << text << ' ' << locale.name().toStdString();
        if (state == QValidator::Acceptable) {
            EXPECT_EQ(box.valueFromText(typed), value) << text << ' ' << locale.name().toStdString();
        }
    }
}

}  // namespace
