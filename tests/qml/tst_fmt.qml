import QtQuick
import QtTest
import Coinhall

// What the screens add to the money rules (tests/core/model/money_test.cpp): text that
// is no amount shows and reads as nothing, and the date texts.
TestCase {
    name: "Fmt"

    function test_badTextAndDates() {
        compare([Fmt.money("abc"), Fmt.signedMoney("abc"), Fmt.parse("abc"), Fmt.parse("")], ["", "", "", ""])
        verify(Fmt.isNegative("-0.01") && !Fmt.isNegative("0"))
        const noon = new Date(2025, 2, 4, 12, 0, 0).getTime()
        compare([Fmt.date(noon), Fmt.shortDate(noon), Fmt.month(noon), Fmt.date(NaN)],
                ["Mar 4, 2025", "Mar 4", "March 2025", ""])
    }
}
