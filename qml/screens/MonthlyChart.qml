pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// Money in against money out per month as grouped bars: for each month, oldest
// first, an "In" bar in the fixed green and an "Out" bar in the look's accent2 side
// by side, over a value axis with round steps. Axis titles "Month" and "Amount",
// the legend titled "Type"; axis marks in the look's muted colour.
Item {
    id: root

    // The months, oldest first, each a map of monthText ("Jun"), in and out (numbers
    // for the bar heights, never negative) and inText and outText (their money texts),
    // as DashboardSummary.months and ReportsBridge.monthly give them.
    property var months: []

    // The colours of the two kinds.
    readonly property color inColor: Tokens.positive
    readonly property color outColor: Looks.current.accent2
    readonly property int count: months ? months.length : 0
    // The largest bar, and the axis's round step and top above it.
    readonly property real largest: {
        let top = 0
        for (let i = 0; i < count; ++i)
            top = Math.max(top, Number(months[i].in) || 0, Number(months[i].out) || 0)
        return top
    }
    readonly property real axisStep: niceStep(largest / 4)
    readonly property real axisTop: largest > 0 ? axisStep * Math.ceil(largest / axisStep) : 4 * axisStep
    readonly property int tickCount: Math.round(axisTop / axisStep)

    // A step of 1, 2, 2.5 or 5 times a power of ten not below `raw`; 1 when there is nothing.
    function niceStep(raw: real): real {
        if (!(raw > 0))
            return 1
        const power = Math.pow(10, Math.floor(Math.log(raw) / Math.LN10))
        for (const factor of [1, 2, 2.5, 5, 10]) {
            if (factor * power >= raw)
                return factor * power
        }
        return 10 * power
    }

    function tickText(value: real): string {
        return Number(value).toLocaleString(Qt.locale(), "f", value % 1 === 0 ? 0 : 1)
    }

    implicitWidth: 480
    implicitHeight: 240
    Accessible.role: Accessible.Chart
    Accessible.name: "Money in vs money out"

    // The mark and title type.
    FontMetrics {
        id: marks

        font.family: Tokens.textFamily
        font.pointSize: Tokens.pt(Tokens.captionSize)
    }

    RowLayout {
        anchors.fill: parent
        spacing: Tokens.spaceS

        // "Amount", turned to run up the value axis.
        Item {
            Layout.fillHeight: true
            implicitWidth: amountTitle.implicitHeight

            Text {
                id: amountTitle

                objectName: "amountAxisTitle"
                anchors.centerIn: parent
                rotation: -90
                text: "Amount"
                font: marks.font
                color: Looks.current.muted
                textFormat: Text.PlainText
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Tokens.spaceXS

            Item {
                id: plotArea

                // Room on the left for the longest value mark.
                readonly property real markWidth: marks.advanceWidth(root.tickText(root.axisTop)) + Tokens.spaceS
                readonly property real plotHeight: Math.max(0, height - marks.height / 2)

                Layout.fillWidth: true
                Layout.fillHeight: true

                // The value marks and their grid lines, zero at the bottom.
                Repeater {
                    model: root.tickCount + 1

                    Item {
                        id: tick

                        required property int index
                        readonly property real lineY: marks.height / 2 + plotArea.plotHeight
                                                      - plotArea.plotHeight * index / root.tickCount

                        width: plotArea.width
                        height: plotArea.height

                        Text {
                            x: plotArea.markWidth - Tokens.spaceS - width
                            y: tick.lineY - height / 2
                            text: root.tickText(root.axisStep * tick.index)
                            font: marks.font
                            color: Looks.current.muted
                            textFormat: Text.PlainText
                        }
                        Rectangle {
                            x: plotArea.markWidth
                            y: tick.lineY
                            width: plotArea.width - plotArea.markWidth
                            height: 1
                            color: Looks.current.line
                            opacity: tick.index === 0 ? 1 : 0.5
                        }
                    }
                }

                // One group of two bars per month.
                Row {
                    id: groups

                    x: plotArea.markWidth
                    y: marks.height / 2
                    width: plotArea.width - plotArea.markWidth
                    height: plotArea.plotHeight

                    Repeater {
                        model: root.months

                        Item {
                            id: group

                            required property var modelData
                            required property int index

                            objectName: "monthGroup"
                            width: groups.width / Math.max(1, root.count)
                            height: groups.height

                            Row {
                                anchors.horizontalCenter: parent.horizontalCenter
                                height: group.height
                                spacing: 3

                                Repeater {
                                    model: [
                                        { kind: "In", value: Number(group.modelData.in) || 0,
                                          text: group.modelData.inText, color: root.inColor },
                                        { kind: "Out", value: Number(group.modelData.out) || 0,
                                          text: group.modelData.outText, color: root.outColor }
                                    ]

                                    Rectangle {
                                        id: bar

                                        required property var modelData

                                        objectName: "bar" + modelData.kind
                                        y: group.height - height
                                        width: Math.max(4, Math.min(28, (group.width - 3) * 0.32))
                                        height: root.axisTop > 0 ? groups.height * modelData.value / root.axisTop : 0
                                        radius: 2
                                        color: modelData.color
                                        Accessible.role: Accessible.StaticText
                                        Accessible.name: group.modelData.monthText + " " + modelData.kind + " "
                                                         + modelData.text

                                        HoverHandler {
                                            id: barHover
                                        }
                                        ToolTip.visible: barHover.hovered
                                        ToolTip.delay: 300
                                        ToolTip.text: group.modelData.monthText + " · " + modelData.kind + ": "
                                                      + modelData.text
                                    }
                                }
                            }
                        }
                    }
                }
            }

            // The month marks under their groups.
            Row {
                Layout.fillWidth: true
                Layout.leftMargin: plotArea.markWidth

                Repeater {
                    model: root.months

                    Text {
                        required property var modelData

                        objectName: "monthMark"
                        width: (plotArea.width - plotArea.markWidth) / Math.max(1, root.count)
                        horizontalAlignment: Text.AlignHCenter
                        text: modelData.monthText
                        font: marks.font
                        color: Looks.current.muted
                        elide: Text.ElideRight
                        textFormat: Text.PlainText
                    }
                }
            }

            // The axis title under the marks, and the legend of the two kinds.
            RowLayout {
                Layout.fillWidth: true
                Layout.leftMargin: plotArea.markWidth
                spacing: Tokens.spaceM

                Text {
                    objectName: "monthAxisTitle"
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    text: "Month"
                    font: marks.font
                    color: Looks.current.muted
                    textFormat: Text.PlainText
                }

                Text {
                    objectName: "typeLegendTitle"
                    text: "Type"
                    font: marks.font
                    color: Looks.current.muted
                    textFormat: Text.PlainText
                }

                // A positioner holds the entries, not the layout: the model is made anew with each look.
                Row {
                    spacing: Tokens.spaceM

                    Repeater {
                        model: [
                            { kind: "In", color: root.inColor },
                            { kind: "Out", color: root.outColor }
                        ]

                        Row {
                            id: legend

                            required property var modelData

                            spacing: Tokens.spaceXS

                            Rectangle {
                                anchors.verticalCenter: parent.verticalCenter
                                width: 10
                                height: 10
                                radius: 2
                                color: legend.modelData.color
                            }
                            Text {
                                text: legend.modelData.kind
                                font: marks.font
                                color: Looks.current.soft
                                textFormat: Text.PlainText
                            }
                        }
                    }
                }
            }
        }
    }
}
