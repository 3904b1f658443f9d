import QtQuick
import QtTest
import Coinhall

// The texts the screens show for amounts and dates, and the reading of typed amounts.
TestCase {
    name: "Fmt"

    function test_moneyAndTypedAmounts() {
        for (const [amount, money, signed] of [["-45.1", "-$45.10", "-$45.10"], ["1234.5", "$1,234.50", "+$1,234.50"],
                                               ["0", "$0.00", "$0.00"], ["abc", "", ""]]) {
            compare(Fmt.money(amount), money, amount)
            compare(Fmt.signedMoney(amount), signed, amount)
        }
        verify(Fmt.isNegative("-0.01"))
        verify(!Fmt.isNegative("0"))
        for (const [typed, amount] of [["(45.10)", "-45.1"], ["45.10-", "-45.1"], ["$1,234.50", "1234.5"],
                                       ["12.345", "12.345"], ["abc", ""], ["", ""]])
            compare(Fmt.parse(typed), amount, typed)
    }

    function test_dates() {
        const noon = new Date(2025, 2, 4, 12, 0, 0).getTime()
        compare(Fmt.date(noon), "Mar 4, 2025")
        compare(Fmt.shortDate(noon), "Mar 4")
        compare(Fmt.month(noon), "March 2025")
        compare(Fmt.date(NaN), "")
    }
}
