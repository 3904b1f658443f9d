import QtQuick
import QtQuick.Layouts
import Coinhall

// The about panel: the program's name and the maker's credit with a link to its site.
Window {
    id: root

    title: "About " + HelpBook.appName
    width: 380
    height: 200
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    flags: Qt.Dialog
    modality: Qt.ApplicationModal
    color: QFSKitHost.theme.bg

    QFPanel {
        anchors.fill: parent
        anchors.margins: 10
        padding: 22

        ColumnLayout {
            anchors.fill: parent
            spacing: 6

            Text {
                objectName: "aboutName"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: HelpBook.appName
                font.pointSize: Tokens.pt(20)
                font.weight: Font.Bold
                color: QFSKitHost.theme.text
                textFormat: Text.PlainText
            }
            // The maker's credit, then its site's domain as a link.
            Text {
                objectName: "aboutCredit"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: HelpBook.aboutLine
                font.pointSize: Tokens.pt(11)
                font.weight: Font.DemiBold
                color: QFSKitHost.theme.text
                textFormat: Text.PlainText
                wrapMode: Text.WordWrap
            }
            Text {
                objectName: "aboutLink"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: "<a href=\"" + HelpBook.website + "\">" + HelpBook.websiteText + "</a>"
                font.pointSize: Tokens.pt(11)
                color: QFSKitHost.theme.text
                linkColor: QFSKitHost.theme.accent
                textFormat: Text.StyledText
                onLinkActivated: link => Qt.openUrlExternally(link)

                HoverHandler {
                    cursorShape: parent.hoveredLink !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
                }
            }
            Item {
                Layout.fillHeight: true
            }
            QFChromeButton {
                Layout.alignment: Qt.AlignHCenter
                text: "OK"
                prominent: true
                onClicked: root.close()
            }
        }
    }
}
