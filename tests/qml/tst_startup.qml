import QtQuick
import QtTest
import Coinhall

TestCase {
    name: "Startup"

    function test_storeIsReachable() {
        compare(Store.locked, false)
        compare(Store.status, "")
    }
}
