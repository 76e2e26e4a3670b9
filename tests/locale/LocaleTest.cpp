#include "common/clsLog.h"
#include "common/Numbers.h"
#include "config/SettingNumbers.h"
#include "supervision/BackupArchive.h"
#include "supervision/BackupClock.h"
#include "support/Test.h"

#include <utility>
#include <vector>

// What an operator sees and what lies on the disk, on computers of other countries. The user's settings are
// the whole account's, so this program runs alone.

namespace {

struct Country {
    std::string name;
    std::vector<std::pair<LCTYPE, std::string>> settings;
    std::string restoreTime, morning, evening;
};

const std::vector<Country> kCountries{{"United States",
                                       {{LOCALE_SSHORTDATE, "M/d/yyyy"},
                                        {LOCALE_STIMEFORMAT, "h:mm:ss tt"},
                                        {LOCALE_SDECIMAL, "."},
                                        {LOCALE_STHOUSAND, ","},
                                        {LOCALE_S1159, "AM"},
                                        {LOCALE_S2359, "PM"}},
                                       "7/1/2004 12:03:20 AM",
                                       "AM",
                                       "PM"},
                                      {"Germany",
                                       {{LOCALE_SSHORTDATE, "dd.MM.yyyy"},
                                        {LOCALE_STIMEFORMAT, "HH:mm:ss"},
                                        {LOCALE_SDECIMAL, ","},
                                        {LOCALE_STHOUSAND, "."},
                                        {LOCALE_S1159, ""},
                                        {LOCALE_S2359, ""}},
                                       "01.07.2004 00:03:20",
                                       "AM",
                                       "PM"},
                                      {"Albania",
                                       {{LOCALE_SSHORTDATE, "d.M.yyyy"},
                                        {LOCALE_STIMEFORMAT, "h:mm:ss.tt"},
                                        {LOCALE_SDECIMAL, ","},
                                        {LOCALE_STHOUSAND, " "},
                                        {LOCALE_S1159, "PD"},
                                        {LOCALE_S2359, "MD"}},
                                       "1.7.2004 12:03:20.PD",
                                       "PD",
                                       "MD"},
                                      {"Hungary",
                                       {{LOCALE_SSHORTDATE, "yyyy. MM. dd."},
                                        {LOCALE_STIMEFORMAT, "H:mm:ss"},
                                        {LOCALE_SDECIMAL, ","},
                                        {LOCALE_STHOUSAND, " "},
                                        {LOCALE_S1159, "de."},
                                        {LOCALE_S2359, "du."}},
                                       "2004. 07. 01. 0:03:20",
                                       "AM",
                                       "PM"}};

class Locale : public testing::TestWithParam<Country> {
protected:
    void SetUp() override {
        for (const auto& [what, value] : GetParam().settings) {
            char old[80] = "";
            ASSERT_NE(GetLocaleInfoA(LOCALE_USER_DEFAULT, what, old, sizeof old), 0);
            before_.emplace_back(what, old);
            ASSERT_NE(SetLocaleInfoA(LOCALE_USER_DEFAULT, what, value.c_str()), 0);
        }
    }
    void TearDown() override {
        for (const auto& [what, value] : before_)
            SetLocaleInfoA(LOCALE_USER_DEFAULT, what, value.c_str());
    }

private:
    std::vector<std::pair<LCTYPE, std::string>> before_;
};

constexpr SYSTEMTIME kLateEvening{2004, 6, 3, 30, 23, 58, 40, 0};

TEST_P(Locale, AnnouncementsTellTheTimeAsPlayersReadIt) {
    const supervision::BackupSettings settings{60, 2.5, false, true,
                                               "$TimetoBackup, $BackupDuration, $RestoreTime"};
    EXPECT_EQ(supervision::Announcement(3470, settings, kLateEvening),
              "2 minutes, 2.5 minutes, " + GetParam().restoreTime);
}

TEST_P(Locale, BackupFoldersAreNamedWithItsSigns) {
    SYSTEMTIME time = kLateEvening;
    EXPECT_EQ(supervision::BackupName(time), "30-06-2004 11 58 " + GetParam().evening);
    time.wHour = 0;
    EXPECT_EQ(supervision::BackupName(time), "30-06-2004 12 58 " + GetParam().morning);
}

TEST_P(Locale, NumbersAndStampsOfFilesAreTheSameEverywhere) {
    EXPECT_EQ(common::Val("2.5 minutes"), 2.5);
    EXPECT_EQ(common::Val("2,5"), 2);
    EXPECT_EQ(common::NumberText(2.5), "2.5");
    EXPECT_EQ(common::ThousandsText(1234567), "1,234,567");
    EXPECT_EQ(config::CheckValueOf("0.4"), 0);
    EXPECT_EQ(config::PriorityOf("3.5"), 4);
    EXPECT_EQ(common::LogStamp(kLateEvening), "[30/06/04 23:58:40]");
}

INSTANTIATE_TEST_SUITE_P(Countries, Locale, testing::ValuesIn(kCountries), [](const auto& country) {
    std::string name = country.param.name;
    std::erase(name, ' ');
    return name;
});

} // namespace
