import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// The built-in manual: the chapters in a sidebar, the chosen chapter's text beside
// it, and "← Back", "Next →" and "Done" under the text.
FocusScope {
    id: root

    // The chapter a new help view starts on.
    property int startPage: 0
    // The chapter shown.
    property int topic: startPage

    readonly property var chapters: HelpBook.chapters
    readonly property int lastTopic: chapters.length - 1
    readonly property var chapter: chapters[Math.max(0, Math.min(topic, lastTopic))]

    // "Done" was pressed (or Escape): close the help.
    signal done

    // The chapter text as styled text: web addresses become links, line breaks stay.
    function linked(plain: string): string {
        const escaped = plain.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;")
        return escaped.replace(/https?:\/\/[^\s]+[^\s.,;:)]/g, url => "<a href=\"" + url + "\">" + url + "</a>")
                      .replace(/\n/g, "<br>")
    }

    implicitWidth: 860
    implicitHeight: 560
    focus: true

    Accessible.role: Accessible.Dialog
    Accessible.name: "QFS Coinhall Help"

    Keys.onEscapePressed: done()

    onTopicChanged: reader.contentY = 0

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: Looks.current.panelTop }
            GradientStop { position: 1; color: Looks.current.panelBottom }
        }
    }

    RowLayout {
        anchors.fill: parent
        anchors.margins: 1
        spacing: 0

        // The chapters.
        Rectangle {
            Layout.preferredWidth: 250
            Layout.fillHeight: true
            color: Looks.current.well

            ListView {
                id: list

                objectName: "helpChapters"
                anchors.fill: parent
                anchors.margins: Tokens.spaceM
                clip: true
                spacing: 2
                model: root.chapters
                currentIndex: root.topic
                keyNavigationEnabled: true
                activeFocusOnTab: true
                // The view's own (invisible) highlight would otherwise grow to the row's
                // width over half a second, drawing a frame each step.
                highlightMoveDuration: 0
                highlightResizeDuration: 0
                onCurrentIndexChanged: root.topic = currentIndex

                delegate: ItemDelegate {
                    id: row

                    required property int index
                    required property var modelData

                    width: ListView.view.width
                    height: 36
                    // Drawn by the row below; named for the keyboard and screen readers.
                    text: modelData.title
                    highlighted: index === root.topic
                    onClicked: root.topic = index

                    contentItem: RowLayout {
                        spacing: Tokens.spaceM

                        Icon {
                            Layout.preferredWidth: 22
                            symbol: row.modelData.symbol
                            size: 17
                            color: row.highlighted ? Looks.current.accent : Looks.current.muted
                        }
                        BodyText {
                            Layout.fillWidth: true
                            text: row.modelData.title
                            font.weight: row.highlighted ? Font.Bold : Font.DemiBold
                            font.pointSize: Tokens.pt(14)
                            color: row.highlighted ? Looks.current.text : Looks.current.soft
                            elide: Text.ElideRight
                        }
                    }
                    background: Rectangle {
                        radius: Tokens.rowRadius
                        color: row.highlighted ? Looks.current.panelTop : row.hovered ? Qt.rgba(1, 1, 1, 0.04) : "transparent"
                        // With the keyboard in the list, the chosen row wears the accent.
                        border.width: row.highlighted ? 1 : 0
                        border.color: list.activeFocus ? Looks.current.accent : Looks.current.line
                    }
                }
            }
        }

        // The chapter's text and the keys under it.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: Tokens.spaceXL
            spacing: Tokens.spaceL

            Flickable {
                id: reader

                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                contentWidth: width
                contentHeight: page.implicitHeight
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: SteadyScrollBar {
                    shown: reader.contentHeight > reader.height
                }

                ColumnLayout {
                    id: page

                    width: reader.width - Tokens.spaceM
                    spacing: Tokens.spaceL

                    Text {
                        objectName: "helpTitle"
                        Layout.fillWidth: true
                        text: root.chapter ? root.chapter.title : ""
                        font.family: Tokens.displayFamily
                        font.weight: Font.ExtraBold
                        font.pointSize: Tokens.pt(22)
                        color: Looks.current.text
                        wrapMode: Text.WordWrap
                        textFormat: Text.PlainText
                        Accessible.role: Accessible.Heading
                        Accessible.name: text
                    }
                    BodyText {
                        objectName: "helpBody"
                        Layout.fillWidth: true
                        text: root.chapter ? root.linked(root.chapter.text) : ""
                        font.pointSize: Tokens.pt(14)
                        lineHeight: 1.3
                        color: Looks.current.soft
                        linkColor: Looks.current.accent
                        wrapMode: Text.WordWrap
                        textFormat: Text.StyledText
                        Accessible.role: Accessible.StaticText
                        Accessible.name: root.chapter ? root.chapter.text : ""
                        onLinkActivated: link => Qt.openUrlExternally(link)

                        HoverHandler {
                            cursorShape: parent.hoveredLink !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
                        }
                    }
                }
            }

            // A positioner, not a layout: a layout here missed the keys showing and hiding
            // when the window was reopened on another chapter.
            Item {
                Layout.fillWidth: true
                implicitHeight: doneKey.implicitHeight

                Row {
                    spacing: Tokens.spaceM

                    Key {
                        objectName: "helpBack"
                        visible: root.topic >= 1
                        title: "← Back"
                        onClicked: root.topic = root.topic - 1
                    }
                    Key {
                        objectName: "helpNext"
                        visible: root.topic < root.lastTopic
                        title: "Next →"
                        onClicked: root.topic = root.topic + 1
                    }
                }
                Key {
                    id: doneKey

                    objectName: "helpDone"
                    anchors.right: parent.right
                    title: "Done"
                    lit: true
                    onClicked: root.done()
                }
            }
        }
    }
}
