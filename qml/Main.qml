import QtQuick
import QtQuick.Controls

ApplicationWindow {
    id: root

    width: 1380
    height: 900
    minimumWidth: 640
    minimumHeight: 480
    visible: true
    title: "QFS Coinhall"
}
