<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>DigDetail</name>
    <message>
        <source>Mouse Left   Accept point
Mouse Right  Popup menu
Command+E    Change view mode
Arrows       Move region
             Alter size with Shift
             Alter to edge with Alt
             Regular with Command
Esc          Abort capture
Enter        Finish capture</source>
        <translation>Mouse Left   Accept point
Mouse Right  Popup menu
Ctrl+E       Change view mode
Arrows       Move region
             Alter size with Shift
             Alter to edge with Alt
             Regular with Ctrl
Esc          Abort capture
Enter        Finish capture</translation>
    </message>
    <message>
        <source>Mouse Left   Accept point
Mouse Right  Popup menu

Hold Command key for 45 deg.
Command+E    Change view mode
Arrows       Move by 1pixel
             10 pixels with Shift
             to edge with Alt
Esc          Abort capture
Enter        Finish capture
Backspace    Delete last point</source>
        <translation>Mouse Left   Accept point
Mouse Right  Popup menu

Hold Ctrl key for 45 deg.
Ctrl+E       Change view mode
Arrows       Move by 1pixel
             10 pixels with Shift
             to edge with Alt
Esc          Abort capture
Enter        Finish capture
Backspace    Delete last point</translation>
    </message>
</context>
<context>
    <name>HideTextDialog</name>
    <message numerus="yes">
        <source>Private key, %n line(s)</source>
        <translation>
            <numerusform>Private key, %n line</numerusform>
            <numerusform>Private key, %n lines</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PictureReading</name>
    <message numerus="yes">
        <source>%n character(s) copied: %1</source>
        <translation>
            <numerusform>%n character copied: %1</numerusform>
            <numerusform>%n characters copied: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) to hide found in %1.</source>
        <translation>
            <numerusform>%n place to hide found in %1.</numerusform>
            <numerusform>%n places to hide found in %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) hidden. Look at the picture: recognition can miss something.</source>
        <translation>
            <numerusform>%n place hidden. Look at the picture: recognition can miss something.</numerusform>
            <numerusform>%n places hidden. Look at the picture: recognition can miss something.</numerusform>
        </translation>
    </message>
</context>
</TS>
