import QtQuick
import QtTest
import Coinhall

TestCase {
    name: "Fmt"

    function test_money_data() {
        return [
            { tag: "negative", amount: "-45.1", money: "-$45.10", signed: "-$45.10", negative: true },
            { tag: "positive", amount: "1234.5", money: "$1,234.50", signed: "+$1,234.50", negative: false },
            { tag: "zero has no sign", amount: "0", money: "$0.00", signed: "$0.00", negative: false },
            { tag: "one cent below", amount: "-0.01", money: "-$0.01", signed: "-$0.01", negative: true },
            { tag: "not a number", amount: "abc", money: "", signed: "", negative: false }
        ]
    }

    function test_money(data) {
        compare(Fmt.money(data.amount), data.money)
        compare(Fmt.signedMoney(data.amount), data.signed)
        compare(Fmt.isNegative(data.amount), data.negative)
    }

    function test_parse_data() {
        return [
            { tag: "parentheses", typed: "(45.10)", amount: "-45.1" },
            { tag: "trailing minus", typed: "45.10-", amount: "-45.1" },
            { tag: "dollars and commas", typed: "$1,234.50", amount: "1234.5" },
            { tag: "no rounding", typed: "12.345", amount: "12.345" },
            { tag: "letters", typed: "abc", amount: "" },
            { tag: "empty", typed: "", amount: "" }
        ]
    }

    function test_parse(data) {
        compare(Fmt.parse(data.typed), data.amount)
    }

    function test_dates() {
        const noon = new Date(2025, 2, 4, 12, 0, 0).getTime()
        compare(Fmt.date(noon), "Mar 4, 2025")
        compare(Fmt.shortDate(noon), "Mar 4")
        compare(Fmt.month(noon), "March 2025")
        compare(Fmt.date(NaN), "")
    }
}
