<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Abilities</name>
    <message>
        <source>Pictures of the screen can&apos;t be taken on this desktop. Opening and editing pictures works here too.</source>
        <translation>Auf diesem Desktop lassen sich keine Bilder vom Bildschirm aufnehmen. Das Öffnen und Bearbeiten von Bildern ist auch hier möglich.</translation>
    </message>
    <message>
        <source>This desktop keeps no pictures of windows that others cover.</source>
        <translation>Dieser Desktop hält keine Bilder von Fenstern bereit, die von anderen verdeckt sind.</translation>
    </message>
    <message>
        <source>This desktop lets no program turn the wheel.</source>
        <translation>Auf diesem Desktop darf kein Programm das Mausrad drehen.</translation>
    </message>
    <message>
        <source>This Wayland desktop gives programs no pictures of the screen in a way that is known here. Log in to an X11 session for that; opening and editing pictures works here too.</source>
        <translation>Dieser Wayland-Desktop gibt Programmen auf keine hier bekannte Weise Bilder des Bildschirms. Melden Sie sich dafür in einer X11-Sitzung an; Bilder öffnen und bearbeiten geht auch hier.</translation>
    </message>
    <message>
        <source>Pictures of the screen can&apos;t be taken here, since the program was started for X11 in a Wayland session. Start it without QT_QPA_PLATFORM=xcb.</source>
        <translation>Hier lassen sich keine Bilder des Bildschirms aufnehmen, da das Programm in einer Wayland-Sitzung für X11 gestartet wurde. Starten Sie es ohne QT_QPA_PLATFORM=xcb.</translation>
    </message>
    <message>
        <source>Pictures of the screen can&apos;t be taken here, since the package qt6-wayland is missing. Install it, and start the program again; opening and editing pictures works meanwhile.</source>
        <translation>Hier lassen sich keine Bilder des Bildschirms aufnehmen, da das Paket qt6-wayland fehlt. Installieren Sie es, und starten Sie das Programm neu; Bilder öffnen und bearbeiten geht inzwischen.</translation>
    </message>
    <message>
        <source>This desktop tells no program of open menus. Take the whole screen with the countdown instead, and open the menu meanwhile.</source>
        <translation>Dieser Desktop sagt keinem Programm, welche Menüs offen sind. Nehmen Sie stattdessen den ganzen Bildschirm mit dem Countdown auf, und öffnen Sie inzwischen das Menü.</translation>
    </message>
    <message>
        <source>On this desktop keys are bound in its own settings.</source>
        <translation>Auf diesem Desktop werden Tasten in dessen eigenen Einstellungen belegt.</translation>
    </message>
    <message>
        <source>This desktop tells no program of the windows of others.</source>
        <translation>Dieser Desktop sagt keinem Programm, welche Fenster andere haben.</translation>
    </message>
    <message>
        <source>This desktop lets no program watch its screens, so that nothing that scrolls can be taken.</source>
        <translation>Dieser Desktop lässt kein Programm seine Bildschirme beobachten, so dass nichts aufgenommen werden kann, was scrollt.</translation>
    </message>
    <message>
        <source>This desktop tells no program what the pointer looks like.</source>
        <translation>Dieser Desktop sagt keinem Programm, wie der Zeiger aussieht.</translation>
    </message>
    <message>
        <source>This desktop lets no program keep a window above all others.</source>
        <translation>Auf diesem Desktop kann kein Programm ein Fenster über allen anderen halten.</translation>
    </message>
</context>
<context>
    <name>AboutBox</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>Registriert</translation>
    </message>
    <message>
        <source>Not registered</source>
        <translation>Nicht registriert</translation>
    </message>
    <message>
        <source>Registered to %1</source>
        <translation>Registriert auf %1</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>Firma</translation>
    </message>
    <message>
        <source>Home page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Unterstützung</translation>
    </message>
    <message>
        <source>Registration</source>
        <translation>Registrierung</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>BackdropDialog</name>
    <message>
        <source>Sea</source>
        <translation>Meer</translation>
    </message>
    <message>
        <source>Evening</source>
        <translation>Abend</translation>
    </message>
    <message>
        <source>Meadow</source>
        <translation>Wiese</translation>
    </message>
    <message>
        <source>Slate</source>
        <translation>Schiefer</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>Papier</translation>
    </message>
    <message>
        <source>Blurred Picture</source>
        <translation>Unscharfes Bild</translation>
    </message>
    <message>
        <source>Backdrop</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>S&amp;hadow</source>
        <translation>&amp;Schatten</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Blurred picture</source>
        <translation>Unscharfes Bild</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>&amp;Ground</source>
        <translation>&amp;Grund</translation>
    </message>
    <message>
        <source>&amp;Colour</source>
        <translation>&amp;Farbe</translation>
    </message>
    <message>
        <source>S&amp;econd colour</source>
        <translation>&amp;Zweite Farbe</translation>
    </message>
    <message>
        <source>&amp;Padding</source>
        <translation>&amp;Rand</translation>
    </message>
    <message>
        <source>&amp;Rounded corners</source>
        <translation>Runde &amp;Ecken</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source>As it comes</source>
        <translation>Wie es kommt</translation>
    </message>
    <message>
        <source>%1 : %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>Ratio of &amp;sides</source>
        <translation>Seiten&amp;verhältnis</translation>
    </message>
</context>
<context>
    <name>CanvasDialog</name>
    <message>
        <source>Top left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <source>Canvas Size</source>
        <translation>Leinwandgröße</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>&amp;Breite</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>&amp;Höhe</translation>
    </message>
    <message>
        <source>&amp;Ground</source>
        <translation>&amp;Grund</translation>
    </message>
    <message>
        <source>&amp;Picture&apos;s place</source>
        <translation>&amp;Platz des Bildes</translation>
    </message>
</context>
<context>
    <name>CaptureBridge</name>
    <message>
        <source>SnapWorkbench is Failing: %1: %2</source>
        <translation>SnapWorkbench ist gescheitert: %1: %2</translation>
    </message>
    <message>
        <source>Do you want to enable Scroll Capture?</source>
        <translation>Möchten Sie die Aufnahme von Bildlaufbereichen einschalten?</translation>
    </message>
    <message>
        <source>Scroll Capture allows you to select the scrolling area by just one click. 
Click No to continue common capture, or Enable Scroll Capture now?</source>
        <translation>Damit wählen Sie einen Bildlaufbereich mit nur einem Klick aus. 
Klicken Sie auf „Nein“, um ohne sie fortzufahren, oder möchten Sie sie jetzt einschalten?</translation>
    </message>
    <message>
        <source>Enable Scroll Capture</source>
        <translation>Einschalten</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Alert</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>The folder for the picture, %1, can&apos;t be used: %2</source>
        <translation>Der Ordner für das Bild, %1, kann nicht verwendet werden: %2</translation>
    </message>
</context>
<context>
    <name>CaptureOverlay</name>
    <message>
        <source>Dismiss this menu </source>
        <translation>Dieses Menü schließen</translation>
    </message>
    <message>
        <source>Abort(Esc)</source>
        <translation>Abbrechen (Esc)</translation>
    </message>
    <message>
        <source>Change magnifier view mode</source>
        <translation>Ansicht der Lupe wechseln</translation>
    </message>
</context>
<context>
    <name>CapturePage</name>
    <message>
        <source>After a Grab</source>
        <translation>Nach einer Aufnahme</translation>
    </message>
    <message>
        <source>Open in a &amp;tab</source>
        <translation>In einem Ta&amp;b öffnen</translation>
    </message>
    <message>
        <source>C&amp;opy to the clipboard</source>
        <translation>In die Zwischenablage k&amp;opieren</translation>
    </message>
    <message>
        <source>&amp;Save in the folder for pictures</source>
        <translation>Im Ordner für Bilder &amp;speichern</translation>
    </message>
    <message>
        <source>&amp;Read the text and copy it</source>
        <translation>Den Te&amp;xt lesen und kopieren</translation>
    </message>
    <message>
        <source>Show a &amp;notification</source>
        <translation>Benachrichti&amp;gung zeigen</translation>
    </message>
    <message>
        <source>Marking</source>
        <translation>Markieren</translation>
    </message>
    <message>
        <source>Take &amp;when the button is released</source>
        <translation>Beim &amp;Loslassen der Maustaste aufnehmen</translation>
    </message>
    <message>
        <source>&amp;Double click takes</source>
        <translation>&amp;Doppelklick nimmt auf</translation>
    </message>
    <message>
        <source>C&amp;lear selection</source>
        <translation>&amp;Ungetrübte Auswahl</translation>
    </message>
    <message>
        <source>Free&amp;ze the screen while choosing</source>
        <translation>Bildschirm beim Auswählen a&amp;nhalten</translation>
    </message>
    <message>
        <source>On this desktop the screen always stands still while you choose.</source>
        <translation>Auf diesem Desktop steht der Bildschirm beim Auswählen immer still.</translation>
    </message>
    <message>
        <source>Show the &amp;pointer in pictures</source>
        <translation>&amp;Zeiger in Bildern zeigen</translation>
    </message>
    <message>
        <source>A picture has to go somewhere. Choose something below first: copying, saving or reading.</source>
        <translation>Irgendwohin muss ein Bild. Wählen Sie erst etwas darunter: Kopieren, Speichern oder Lesen.</translation>
    </message>
    <message>
        <source>P&amp;in to the screen</source>
        <translation>An den Bildschirm &amp;heften</translation>
    </message>
    <message>
        <source>Pins</source>
        <translation>Angeheftete Bilder</translation>
    </message>
    <message>
        <source>Show pins in pict&amp;ures</source>
        <translation>Angeheftete Bilder in Aufnah&amp;men zeigen</translation>
    </message>
    <message>
        <source>Bring pins &amp;back after a restart</source>
        <translation>Angeheftete Bilder nach einem Neustart &amp;wieder zeigen</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>K&amp;eep running in the tray when the window is closed</source>
        <translation>Nach dem Schließen des Fenste&amp;rs neben der Uhr weiterlaufen</translation>
    </message>
</context>
<context>
    <name>CaptureRefusal</name>
    <message>
        <source>No area has been marked yet that could be taken again.</source>
        <translation>Es ist noch kein Bereich markiert worden, der noch einmal aufgenommen werden könnte.</translation>
    </message>
</context>
<context>
    <name>CodeReader</name>
    <message>
        <source>Reading codes needs the package %1.</source>
        <translation>Zum Lesen von Codes fehlt das Paket %1.</translation>
    </message>
</context>
<context>
    <name>ColorPopup</name>
    <message>
        <source>Black</source>
        <translation>Schwarz</translation>
    </message>
    <message>
        <source>Dark grey</source>
        <translation>Dunkelgrau</translation>
    </message>
    <message>
        <source>Light grey</source>
        <translation>Hellgrau</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Dark blue</source>
        <translation>Dunkelblau</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Light blue</source>
        <translation>Hellblau</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>Violett</translation>
    </message>
    <message>
        <source>Dark red</source>
        <translation>Dunkelrot</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <source>Dark green</source>
        <translation>Dunkelgrün</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <source>Light green</source>
        <translation>Hellgrün</translation>
    </message>
    <message>
        <source>Pink</source>
        <translation>Rosa</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <extracomment>A colour&apos;s name and its value, such as &quot;Red, #ff0000&quot;.</extracomment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Last used</source>
        <translation>Zuletzt verwendet</translation>
    </message>
    <message>
        <source>Palette</source>
        <translation>Palette</translation>
    </message>
    <message>
        <source>&amp;More Colours...</source>
        <translation>&amp;Weitere Farben ...</translation>
    </message>
</context>
<context>
    <name>ContentCapture</name>
    <message>
        <source>What has been taken so far</source>
        <translation>Was bisher aufgenommen ist</translation>
    </message>
    <message>
        <source>Another window</source>
        <translation>Ein anderes Fenster</translation>
    </message>
    <message>
        <source>There is no such window any more</source>
        <translation>Dieses Fenster gibt es nicht mehr</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>keeps what there is</source>
        <translation>behält, was da ist</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>bricht ab</translation>
    </message>
    <message>
        <source>%1. The picture ends at row %2.</source>
        <translation>%1. Das Bild endet bei Zeile %2.</translation>
    </message>
    <message>
        <source>%1. The picture ends at column %2.</source>
        <translation>%1. Das Bild endet bei Spalte %2.</translation>
    </message>
    <message>
        <source>%1. The key of this grab again keeps what there is, &quot;cancel&quot; gives up.</source>
        <translation>%1. Die Taste dieser Aufnahme noch einmal behält, was da ist, „cancel“ gibt auf.</translation>
    </message>
</context>
<context>
    <name>ContentPick</name>
    <message>
        <source>Point at a window</source>
        <translation>Zeigen Sie auf ein Fenster</translation>
    </message>
    <message>
        <source>takes the window</source>
        <translation>nimmt das Fenster auf</translation>
    </message>
    <message>
        <source>Ctrl+click, Return</source>
        <translation>Strg+Klick, Eingabe</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>bricht ab</translation>
    </message>
    <message>
        <source>takes all that scrolls there, by the wheel</source>
        <translation>nimmt mit dem Mausrad alles auf, was dort scrollt</translation>
    </message>
    <message>
        <source>takes all that scrolls in it, by the wheel</source>
        <translation>nimmt mit dem Mausrad alles auf, was darin scrollt</translation>
    </message>
    <message>
        <source>Shift held</source>
        <translation>Mit Umschalttaste</translation>
    </message>
    <message>
        <source>also what lies beside the view</source>
        <translation>auch, was neben dem Sichtbaren liegt</translation>
    </message>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>takes what you scroll with your own hands</source>
        <translation>nimmt auf, was Sie selbst scrollen</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>marks another part of a window</source>
        <translation>markiert einen anderen Teil eines Fensters</translation>
    </message>
    <message>
        <source>marks the part of a window that scrolls</source>
        <translation>markiert den Teil eines Fensters, der scrollt</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>Loslassen</translation>
    </message>
    <message>
        <source>marks this part: Return or H takes what scrolls in it</source>
        <translation>markiert diesen Teil: Eingabe oder H nimmt auf, was darin scrollt</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>goes to the next window</source>
        <translation>geht zum nächsten Fenster</translation>
    </message>
    <message>
        <source>Click, Space</source>
        <translation>Klick, Leertaste</translation>
    </message>
    <message>
        <source>Marked: %1 × %2 pixels</source>
        <translation>Markiert: %1 × %2 Pixel</translation>
    </message>
    <message>
        <source>Mark the part of the screen that scrolls</source>
        <translation>Markieren Sie den Teil des Bildschirms, der scrollt</translation>
    </message>
    <message>
        <source>marks another part</source>
        <translation>markiert einen anderen Teil</translation>
    </message>
    <message>
        <source>marks it</source>
        <translation>markiert ihn</translation>
    </message>
    <message>
        <source>Return, H</source>
        <translation>Eingabe, H</translation>
    </message>
    <message>
        <source>Then</source>
        <translation>Danach</translation>
    </message>
    <message>
        <source>this grab again, or a start of this program, keeps what there is</source>
        <translation>diese Aufnahme noch einmal, oder ein Start dieses Programms, behält, was da ist</translation>
    </message>
</context>
<context>
    <name>Dialog</name>
    <message>
        <source>Snap</source>
        <translation>Aufnehmen</translation>
    </message>
</context>
<context>
    <name>DialogCountDown</name>
    <message>
        <source>Press ESC to cancel</source>
        <translation>Esc bricht ab</translation>
    </message>
</context>
<context>
    <name>DialogPreference</name>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Run Minimized</source>
        <translation>Minimiert starten</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>Hide SnapWorkbench before Snapping</source>
        <translation>SnapWorkbench vor der Aufnahme ausblenden</translation>
    </message>
    <message>
        <source>Show SnapWorkbench after Snapping</source>
        <translation>SnapWorkbench nach der Aufnahme zeigen</translation>
    </message>
    <message>
        <source>Full Screen Timer</source>
        <translation>Zeit bis zur Aufnahme</translation>
    </message>
    <message>
        <source>Magnifier</source>
        <translation>Lupe</translation>
    </message>
    <message>
        <source>Show Magnification</source>
        <translation>Lupe zeigen</translation>
    </message>
    <message>
        <source>Magnification</source>
        <translation>Vergrößerung</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasten</translation>
    </message>
    <message>
        <source>Marking Up</source>
        <translation>Markieren</translation>
    </message>
    <message>
        <source>&amp;Remember the style of each tool</source>
        <translation>&amp;Stil jedes Werkzeugs merken</translation>
    </message>
    <message>
        <source>&amp;Capture</source>
        <translation>Au&amp;fnahme</translation>
    </message>
    <message>
        <source>&amp;Files</source>
        <translation>Datei&amp;en</translation>
    </message>
    <message>
        <source>Keep the &amp;line colour</source>
        <translation>&amp;Linienfarbe behalten</translation>
    </message>
</context>
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
        <translation>Maus links   Punkt setzen
Maus rechts  Menü öffnen
Strg+E       Ansicht wechseln
Pfeile       Bereich bewegen
             Umschalt: Größe
             Alt: bis zum Rand
             Strg: gleichmäßig
Esc          Abbrechen
Eingabe      Aufnehmen</translation>
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
        <translation>Maus links   Punkt setzen
Maus rechts  Menü öffnen

Strg hält 45-Grad-Schritte.
Strg+E       Ansicht wechseln
Pfeile       1 Pixel bewegen
             Umschalt: 10 Pixel
             Alt: bis zum Rand
Esc          Abbrechen
Eingabe      Aufnehmen
Rücktaste    Punkt löschen</translation>
    </message>
</context>
<context>
    <name>DocumentFiles</name>
    <message>
        <source>&quot;%1&quot; was not saved: another program or another tab has changed the file.</source>
        <translation>„%1“ wurde nicht gespeichert: Ein anderes Programm oder ein anderer Tab hat die Datei geändert.</translation>
    </message>
    <message>
        <source>&amp;Overwrite</source>
        <translation>Ü&amp;berschreiben</translation>
    </message>
    <message>
        <source>There is no picture.</source>
        <translation>Es gibt kein Bild.</translation>
    </message>
    <message>
        <source>Saving &quot;%1&quot;...</source>
        <translation>„%1“ wird gespeichert ...</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be saved: %2</source>
        <translation>„%1“ konnte nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>Speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Save changes to &quot;%1&quot; ?</source>
        <translation>Änderungen an „%1“ speichern?</translation>
    </message>
    <message>
        <source>Save all changes ?</source>
        <translation>Alle Änderungen speichern?</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not saved: it would take the place of the file of a later version of this program.</source>
        <translation>„%1“ wurde nicht gespeichert: Die Datei einer späteren Version dieses Programms würde ersetzt.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; keeps what its covers hide. Whoever gets the file can take them off.</source>
        <translation>„%1“ enthält, was die Abdeckungen verbergen. Wer die Datei bekommt, kann sie abnehmen.</translation>
    </message>
    <message>
        <source>Save &amp;without Layers</source>
        <translation>&amp;Ohne Ebenen speichern</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is still there, with what the covers hide.</source>
        <translation>&quot;%1&quot; ist noch da, mit dem, was die Abdeckungen verbergen.</translation>
    </message>
    <message>
        <source>The picture is in the clipboard.</source>
        <translation>Das Bild ist in der Zwischenablage.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; is not there any more.</source>
        <translation>Den Ordner „%1“ gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>No program opens the folder &quot;%1&quot;.</source>
        <translation>Kein Programm öffnet den Ordner „%1“.</translation>
    </message>
</context>
<context>
    <name>FilesPage</name>
    <message>
        <source>Where Grabs Are Saved</source>
        <translation>Wo Aufnahmen gespeichert werden</translation>
    </message>
    <message>
        <source>How They Are Written</source>
        <translation>Wie sie geschrieben werden</translation>
    </message>
    <message>
        <source>Fol&amp;der</source>
        <translation>&amp;Ordner</translation>
    </message>
    <message>
        <source>C&amp;hoose...</source>
        <translation>Aus&amp;wählen ...</translation>
    </message>
    <message>
        <source>Folder for Pictures</source>
        <translation>Ordner für Bilder</translation>
    </message>
    <message>
        <source>N&amp;ame</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>{date}, {time}, {counter}, {application} and {title} stand for what they say. {date:dd.MM.yy} and {counter:3} set the form.</source>
        <translation>{date}, {time}, {counter}, {application} und {title} stehen für Datum, Uhrzeit, Zähler, Programm und Titel. {date:dd.MM.yy} und {counter:3} legen die Form fest.</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Mail</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>Posteingang</translation>
    </message>
    <message>
        <source>For example: %1</source>
        <translation>Zum Beispiel: %1</translation>
    </message>
    <message>
        <source>For&amp;mat</source>
        <translation>For&amp;mat</translation>
    </message>
    <message>
        <source>&amp;Quality</source>
        <translation>&amp;Qualität</translation>
    </message>
    <message>
        <source>Not used: the whole path is needed, from its first &quot;/&quot; on.</source>
        <translation>Nicht verwendet: Nötig ist der ganze Pfad, vom ersten „/“ an.</translation>
    </message>
    <message>
        <source>Not used: there is no such folder.</source>
        <translation>Nicht verwendet: Diesen Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>Not used: this is no folder.</source>
        <translation>Nicht verwendet: Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>Not used: nothing can be written to this folder.</source>
        <translation>Nicht verwendet: In diesen Ordner kann nichts geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>FrontWindow</name>
    <message>
        <source>&amp;Ask Again</source>
        <translation>&amp;Noch einmal fragen</translation>
    </message>
</context>
<context>
    <name>GrabCalls</name>
    <message>
        <source>Another picture is being taken.</source>
        <translation>Es wird gerade ein anderes Bild aufgenommen.</translation>
    </message>
    <message>
        <source>The picture was given up.</source>
        <translation>Die Aufnahme wurde abgebrochen.</translation>
    </message>
    <message>
        <source>There is not enough memory for the picture.</source>
        <translation>Der Speicher reicht für das Bild nicht aus.</translation>
    </message>
</context>
<context>
    <name>GrabDelivery</name>
    <message>
        <source>The picture is in the clipboard.</source>
        <translation>Das Bild ist in der Zwischenablage.</translation>
    </message>
    <message>
        <source>Saving the picture...</source>
        <translation>Das Bild wird gespeichert ...</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message>
        <source>The picture was not saved.</source>
        <translation>Das Bild wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be saved: %2</source>
        <translation>„%1“ konnte nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <source>A picture was taken</source>
        <translation>Ein Bild wurde aufgenommen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>Ordner öffnen</translation>
    </message>
</context>
<context>
    <name>GrabFlow</name>
    <message>
        <source>The desktop gave no picture of the screen.</source>
        <translation>Der Desktop hat kein Bild des Bildschirms geliefert.</translation>
    </message>
    <message>
        <source>No window was chosen: there is no picture.</source>
        <translation>Kein Fenster wurde gewählt: Es gibt kein Bild.</translation>
    </message>
    <message>
        <source>Nothing could be read there: there is no picture.</source>
        <translation>Dort war nichts zu lesen: Es gibt kein Bild.</translation>
    </message>
    <message>
        <source>The desktop has to ask you whether this program may take pictures of the screen, and does that only while its window is in front. Click on the window, and try again.</source>
        <translation>Der Desktop muss fragen, ob dieses Programm den Bildschirm aufnehmen darf, und tut das nur, während dessen Fenster vorne ist. Bitte das Fenster anklicken und es noch einmal versuchen.</translation>
    </message>
</context>
<context>
    <name>HandCapture</name>
    <message>
        <source>Scroll it with your own hands</source>
        <translation>Scrollen Sie jetzt selbst</translation>
    </message>
    <message>
        <source>Nothing moved for a minute</source>
        <translation>Eine Minute lang hat sich nichts bewegt</translation>
    </message>
    <message>
        <source>There is not enough memory for the picture</source>
        <translation>Für das Bild reicht der Speicher nicht</translation>
    </message>
    <message>
        <source>The picture has reached its limit: %1 pixels each way, and %2 million in all</source>
        <translation>Das Bild hat seine Grenze erreicht: %1 Pixel je Richtung und %2 Millionen im Ganzen</translation>
    </message>
    <message>
        <source>The window left the screen</source>
        <translation>Das Fenster ist vom Bildschirm verschwunden</translation>
    </message>
    <message>
        <source>The window changed its size</source>
        <translation>Das Fenster hat seine Größe geändert</translation>
    </message>
    <message>
        <source>The place was lost at column %1, and what you scrolled to after that is missing. Try again, and scroll more slowly there.</source>
        <translation>Bei Spalte %1 ging die Stelle verloren; was Sie danach gescrollt haben, fehlt im Bild. Versuchen Sie es noch einmal und scrollen Sie dort langsamer.</translation>
    </message>
    <message>
        <source>The place was lost at row %1, and what you scrolled to after that is missing. Try again, and scroll more slowly there.</source>
        <translation>Bei Zeile %1 ging die Stelle verloren; was Sie danach gescrollt haben, fehlt im Bild. Versuchen Sie es noch einmal und scrollen Sie dort langsamer.</translation>
    </message>
    <message>
        <source>The place is lost: scroll back to what was seen last</source>
        <translation>Die Stelle ist verloren: Scrollen Sie zurück zu dem, was zuletzt zu sehen war</translation>
    </message>
    <message>
        <source>%1 × %2 pixels: more can&apos;t be taken</source>
        <translation>%1 × %2 Pixel: Mehr kann nicht aufgenommen werden</translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 Pixel</translation>
    </message>
    <message>
        <source>The desktop does not show this screen to the program</source>
        <translation>Der Desktop zeigt dem Programm diesen Bildschirm nicht</translation>
    </message>
</context>
<context>
    <name>HelperServer</name>
    <message>
        <source>The picture could not be written: %1</source>
        <translation>Das Bild konnte nicht geschrieben werden: %1</translation>
    </message>
</context>
<context>
    <name>HideTextDialog</name>
    <message>
        <source>E-mail address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Telephone number</source>
        <translation>Telefonnummer</translation>
    </message>
    <message>
        <source>Card number</source>
        <translation>Kartennummer</translation>
    </message>
    <message>
        <source>Key or token</source>
        <translation>Schlüssel oder Token</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Hide Text</source>
        <translation>Text verbergen</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>&amp;Verbergen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>The place in the picture</source>
        <translation>Die Stelle im Bild</translation>
    </message>
    <message>
        <source>Found in the picture</source>
        <translation>Im Bild gefunden</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>&amp;What is checked will be covered:</source>
        <translation>&amp;Was angekreuzt ist, wird abgedeckt:</translation>
    </message>
    <message>
        <source>H&amp;ow:</source>
        <translation>W&amp;ie:</translation>
    </message>
    <message numerus="yes">
        <source>Private key, %n line(s)</source>
        <translation>
            <numerusform>Privater Schlüssel, %n Zeile</numerusform>
            <numerusform>Privater Schlüssel, %n Zeilen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KWinRoute</name>
    <message>
        <source>KWin gives pictures of the screen only to programs that are installed with a desktop entry which asks for them. Install Snap Workbench by its package.</source>
        <translation>KWin gibt Bilder des Bildschirms nur Programmen, deren installierter Desktop-Eintrag danach fragt. Installieren Sie Snap Workbench mit seinem Paket.</translation>
    </message>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>Der Desktop hat sein Bild nicht rechtzeitig gegeben.</translation>
    </message>
</context>
<context>
    <name>KeyField</name>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>This key can&apos;t be a hot key.</source>
        <translation>Diese Taste kann kein Tastenkürzel sein.</translation>
    </message>
    <message>
        <source>No key came with %1: another program, the desktop or the system may have it.</source>
        <translation>Zu %1 kam keine Taste: Ein anderes Programm, der Desktop oder das System könnte sie belegt haben.</translation>
    </message>
</context>
<context>
    <name>KeysPage</name>
    <message>
        <source>These keys work anywhere on the desktop:</source>
        <translation>Diese Tasten gelten überall auf dem Desktop:</translation>
    </message>
    <message>
        <source>Hot keys</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Lines for the desktop&apos;s configuration</source>
        <translation>Zeilen für die Konfiguration des Desktops</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>The lines are in the clipboard.</source>
        <translation>Die Zeilen sind in der Zwischenablage.</translation>
    </message>
    <message>
        <source>&amp;Ask the Desktop for Keys</source>
        <translation>Desktop um Tasten &amp;bitten</translation>
    </message>
    <message>
        <source>This program hears no keys here that are pressed in others. Put these lines into the desktop&apos;s configuration:</source>
        <translation>Dieses Programm hört hier keine Tasten, die in anderen gedrückt werden. Setzen Sie diese Zeilen in die Konfiguration des Desktops:</translation>
    </message>
    <message>
        <source>This program hears no keys here that are pressed in others. Give each of these commands a name and a key in the desktop&apos;s settings: on GNOME under Keyboard, View and Customize Shortcuts, Custom Shortcuts.</source>
        <translation>Dieses Programm hört hier keine Tasten, die in anderen gedrückt werden. Geben Sie jedem dieser Befehle in den Einstellungen des Desktops einen Namen und eine Taste: in GNOME unter Tastatur, Tastenkürzel anzeigen und anpassen, Eigene Tastenkürzel.</translation>
    </message>
    <message>
        <source>as in the preferences</source>
        <translation>wie in den Einstellungen</translation>
    </message>
    <message>
        <source>open a tab</source>
        <translation>in einem Tab öffnen</translation>
    </message>
    <message>
        <source>copy the picture</source>
        <translation>das Bild kopieren</translation>
    </message>
    <message>
        <source>save it to a file</source>
        <translation>in eine Datei speichern</translation>
    </message>
    <message>
        <source>copy the text in it</source>
        <translation>den Text darin kopieren</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Hot key</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;Default</source>
        <translation>&amp;Vorgabe</translation>
    </message>
    <message>
        <source>Then</source>
        <translation>Danach</translation>
    </message>
    <message>
        <source>Co&amp;unt down first</source>
        <translation>&amp;Erst herunterzählen</translation>
    </message>
    <message>
        <source>&amp;Hot key:</source>
        <translation>&amp;Kürzel:</translation>
    </message>
    <message>
        <source>&amp;Then:</source>
        <translation>Da&amp;nach:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>off</source>
        <translation>aus</translation>
    </message>
    <message>
        <source>active</source>
        <translation>aktiv</translation>
    </message>
    <message>
        <source>taken by another program</source>
        <translation>von einem anderen Programm belegt</translation>
    </message>
    <message>
        <source>changed by the desktop</source>
        <translation>vom Desktop geändert</translation>
    </message>
    <message>
        <source>Press the keys. Delete clears them, Escape gives up.</source>
        <translation>Drücken Sie die Tasten. Entf löscht das Kürzel, Esc bricht ab.</translation>
    </message>
    <message>
        <source>%1 belongs to &quot;%2&quot; already.</source>
        <translation>%1 gehört schon zu „%2“.</translation>
    </message>
    <message>
        <source>%1 is needed for typing. Hold Ctrl, Alt or Meta with it.</source>
        <translation>%1 wird zum Schreiben gebraucht. Halten Sie Strg, Alt oder Meta dazu.</translation>
    </message>
    <message>
        <source>%1 does nothing here, since another program has it. Press other keys.</source>
        <translation>%1 bewirkt hier nichts, denn ein anderes Programm hat es. Drücken Sie andere Tasten.</translation>
    </message>
    <message>
        <source>S&amp;witch On</source>
        <translation>Ein&amp;schalten</translation>
    </message>
    <message>
        <source>%1 is off, since many desktops have a use of their own for it. Switch it on, or press other keys.</source>
        <translation>%1 ist aus, da viele Desktops es selbst benutzen. Schalten Sie es ein, oder drücken Sie andere Tasten.</translation>
    </message>
    <message>
        <source>pin it to the screen</source>
        <translation>es an den Bildschirm heften</translation>
    </message>
</context>
<context>
    <name>LayeredFile</name>
    <message>
        <source>The file is damaged or not complete.</source>
        <translation>Die Datei ist beschädigt oder unvollständig.</translation>
    </message>
    <message>
        <source>The file has too many parts.</source>
        <translation>Die Datei hat zu viele Teile.</translation>
    </message>
    <message>
        <source>The file has two parts that are called %1.</source>
        <translation>Die Datei hat zwei Teile, die %1 heißen.</translation>
    </message>
    <message>
        <source>%1 is missing in the file.</source>
        <translation>%1 fehlt in der Datei.</translation>
    </message>
    <message>
        <source>%1 is encrypted.</source>
        <translation>%1 ist verschlüsselt.</translation>
    </message>
    <message>
        <source>%1 is packed in a way that this program does not know.</source>
        <translation>%1 ist auf eine Weise gepackt, die dieses Programm nicht kennt.</translation>
    </message>
    <message>
        <source>%1 unpacks to more than a picture of this kind needs.</source>
        <translation>%1 wird entpackt größer, als es für ein solches Bild nötig ist.</translation>
    </message>
    <message>
        <source>%1 is damaged.</source>
        <translation>%1 ist beschädigt.</translation>
    </message>
    <message>
        <source>This is no OpenRaster picture.</source>
        <translation>Das ist kein OpenRaster-Bild.</translation>
    </message>
    <message>
        <source>What the file says of its shapes is damaged, so they are part of the picture now.</source>
        <translation>Die Angaben der Datei zu ihren Formen sind beschädigt; die Formen gehören jetzt zum Bild.</translation>
    </message>
    <message>
        <source>A later version of this program has made the file. Its shapes can&apos;t be changed here, and it will not be written over.</source>
        <translation>Eine spätere Version dieses Programms hat die Datei geschrieben. Ihre Formen lassen sich hier nicht ändern, und sie wird nicht überschrieben.</translation>
    </message>
    <message>
        <source>Another program has changed the file, so its shapes are part of the picture now.</source>
        <translation>Ein anderes Programm hat die Datei geändert; die Formen gehören jetzt zum Bild.</translation>
    </message>
    <message>
        <source>Its layers are shown as one picture, which takes their place when the file is saved.</source>
        <translation>Die Ebenen werden als ein Bild gezeigt, das beim Speichern an ihre Stelle tritt.</translation>
    </message>
    <message>
        <source>The file has no picture of its layers put together, and this program can&apos;t put these together itself.</source>
        <translation>Die Datei enthält kein Bild aller Ebenen zusammen, und dieses Programm kann sie nicht selbst zusammensetzen.</translation>
    </message>
    <message>
        <source>A layer could not be read: %1</source>
        <translation>Eine Ebene war nicht lesbar: %1</translation>
    </message>
    <message>
        <source>%1 is no PNG picture of a usable size.</source>
        <translation>%1 ist kein PNG-Bild von brauchbarer Größe.</translation>
    </message>
    <message>
        <source>The picture has more shapes than a file with layers can have.</source>
        <translation>Das Bild hat mehr Formen, als eine Datei mit Ebenen haben kann.</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Shapes %1 to %2</source>
        <translation>Formen %1 bis %2</translation>
    </message>
    <message>
        <source>A file with layers can&apos;t have that many pixels.</source>
        <translation>Eine Datei mit Ebenen kann nicht so viele Bildpunkte haben.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Snap Workbench</source>
        <translation>Snap Workbench</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Maximieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Capture rectangle</source>
        <translation>Rechteck aufnehmen</translation>
    </message>
    <message>
        <source>Capture ellipse</source>
        <translation>Ellipse aufnehmen</translation>
    </message>
    <message>
        <source>Capture polygon</source>
        <translation>Vieleck aufnehmen</translation>
    </message>
    <message>
        <source>Capture window</source>
        <translation>Fenster aufnehmen</translation>
    </message>
    <message>
        <source>Choose from all windows</source>
        <translation>Aus allen Fenstern wählen</translation>
    </message>
    <message>
        <source>Capture full screen</source>
        <translation>Ganzen Bildschirm aufnehmen</translation>
    </message>
    <message>
        <source>Capture menu</source>
        <translation>Menü aufnehmen</translation>
    </message>
    <message>
        <source>Register</source>
        <translation>Registrieren</translation>
    </message>
    <message>
        <source>Buy now</source>
        <translation>Jetzt kaufen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Home page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Hand</source>
        <translation>Hand</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Ellipse</source>
        <translation>Ellipse</translation>
    </message>
    <message>
        <source>Arrow</source>
        <translation>Pfeil</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Freehand line</source>
        <translation>Freihandlinie</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Line width</source>
        <translation>Linienbreite</translation>
    </message>
    <message>
        <source>Line colour</source>
        <translation>Linienfarbe</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Schriftart</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Schriftgröße</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Real size</source>
        <translation>Originalgröße</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Rectangular</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Capture Rectangular</source>
        <translation>Rechteck aufnehmen</translation>
    </message>
    <message>
        <source>Capture Ellipse</source>
        <translation>Ellipse aufnehmen</translation>
    </message>
    <message>
        <source>Arbitrary</source>
        <translation>Vieleck</translation>
    </message>
    <message>
        <source>Capture Arbitrary</source>
        <translation>Vieleck aufnehmen</translation>
    </message>
    <message>
        <source>All Windows</source>
        <translation>Alle Fenster</translation>
    </message>
    <message>
        <source>Select Window</source>
        <translation>Fenster auswählen</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Ganzer Bildschirm</translation>
    </message>
    <message>
        <source>Capture Full Screen</source>
        <translation>Ganzen Bildschirm aufnehmen</translation>
    </message>
    <message>
        <source>Capture Full Screen with Countdown Timer</source>
        <translation>Ganzen Bildschirm nach Countdown aufnehmen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Capture Menu</source>
        <translation>Menü aufnehmen</translation>
    </message>
    <message>
        <source>Cancel Capture</source>
        <translation>Aufnahme abbrechen</translation>
    </message>
    <message>
        <source>Show Snapworkbench</source>
        <translation>Snap Workbench zeigen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Close %1</source>
        <translation>Schließen %1</translation>
    </message>
    <message>
        <source>Save %1</source>
        <translation>Speichern %1</translation>
    </message>
    <message>
        <source>Save %1 As...</source>
        <translation>Speichern %1 unter ...</translation>
    </message>
    <message>
        <source>Close All</source>
        <translation>Alle schließen</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Alle speichern</translation>
    </message>
    <message>
        <source>Ctrl+Alt+R</source>
        <translation>Ctrl+Alt+R</translation>
    </message>
    <message>
        <source>Ctrl+Alt+E</source>
        <translation>Ctrl+Alt+E</translation>
    </message>
    <message>
        <source>Ctrl+Alt+A</source>
        <translation>Ctrl+Alt+A</translation>
    </message>
    <message>
        <source>Ctrl+Alt+L</source>
        <translation>Ctrl+Alt+L</translation>
    </message>
    <message>
        <source>Ctrl+Alt+W</source>
        <translation>Ctrl+Alt+W</translation>
    </message>
    <message>
        <source>Ctrl+Alt+S</source>
        <translation>Ctrl+Alt+S</translation>
    </message>
    <message>
        <source>Ctrl+Alt+T</source>
        <translation>Ctrl+Alt+T</translation>
    </message>
    <message>
        <source>Ctrl+Alt+M</source>
        <translation>Ctrl+Alt+M</translation>
    </message>
    <message>
        <source>Ctrl+Alt+V</source>
        <translation>Ctrl+Alt+V</translation>
    </message>
    <message>
        <source>Ctrl+O</source>
        <translation>Ctrl+O</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>Ctrl+Shift+W</source>
        <translation>Ctrl+Shift+W</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Ctrl+Shift+S</translation>
    </message>
    <message>
        <source>Ctrl+C</source>
        <translation>Ctrl+C</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Ctrl+S</translation>
    </message>
    <message>
        <source>Ctrl+Z</source>
        <translation>Ctrl+Z</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Z</source>
        <translation>Ctrl+Shift+Z</translation>
    </message>
    <message>
        <source>&amp;sys</source>
        <translation>&amp;System</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>&amp;Preferences</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>Öffnen ...</translation>
    </message>
    <message>
        <source>Contents</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Register...</source>
        <translation>Registrieren ...</translation>
    </message>
    <message>
        <source>&amp;Capture</source>
        <translation>&amp;Aufnahme</translation>
    </message>
    <message>
        <source>../Resources/Help/index.html</source>
        <translation>../Resources/Help/de/index.html</translation>
    </message>
    <message>
        <source>Ctrl+1</source>
        <translation>Ctrl+1</translation>
    </message>
    <message>
        <source>Ctrl+2</source>
        <translation>Ctrl+2</translation>
    </message>
    <message>
        <source>Ctrl+3</source>
        <translation>Ctrl+3</translation>
    </message>
    <message>
        <source>Ctrl+4</source>
        <translation>Ctrl+4</translation>
    </message>
    <message>
        <source>Ctrl+5</source>
        <translation>Ctrl+5</translation>
    </message>
    <message>
        <source>Ctrl+6</source>
        <translation>Ctrl+6</translation>
    </message>
    <message>
        <source>Ctrl+7</source>
        <translation>Ctrl+7</translation>
    </message>
    <message>
        <source>Ctrl+=</source>
        <translation>Ctrl+=</translation>
    </message>
    <message>
        <source>Ctrl+-</source>
        <translation>Ctrl+-</translation>
    </message>
    <message>
        <source>Ctrl+0</source>
        <translation>Ctrl+0</translation>
    </message>
    <message>
        <source>Ctrl+K</source>
        <translation>Ctrl+K</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>Ctrl+M</source>
        <translation>Ctrl+M</translation>
    </message>
    <message>
        <source>F11</source>
        <translation>F11</translation>
    </message>
    <message>
        <source>The settings can&apos;t be saved: %1</source>
        <translation>Die Einstellungen lassen sich nicht speichern: %1</translation>
    </message>
    <message>
        <source>Nothing can be drawn outside the picture. A thin line shows where it ends.</source>
        <translation>Außerhalb des Bildes lässt sich nichts zeichnen. Eine dünne Linie zeigt, wo es endet.</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Stil</translation>
    </message>
    <message>
        <source>Crop</source>
        <translation>Zuschneiden</translation>
    </message>
    <message>
        <source>C</source>
        <translation>C</translation>
    </message>
    <message>
        <source>Highlighter</source>
        <translation>Textmarker</translation>
    </message>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>Numbered marker</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>N</source>
        <translation>N</translation>
    </message>
    <message>
        <source>Measure</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>M</source>
        <translation>M</translation>
    </message>
    <message>
        <source>Pipette</source>
        <translation>Pipette</translation>
    </message>
    <message>
        <source>I</source>
        <translation>I</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>S</source>
        <translation>S</translation>
    </message>
    <message>
        <source>Spotlight</source>
        <translation>Spotlicht</translation>
    </message>
    <message>
        <source>L</source>
        <translation>L</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Sel&amp;ect All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Ctrl+A</source>
        <translation>Ctrl+A</translation>
    </message>
    <message>
        <source>Edit Te&amp;xt</source>
        <translation>&amp;Text bearbeiten</translation>
    </message>
    <message>
        <source>Du&amp;plicate</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <source>Ctrl+D</source>
        <translation>Ctrl+D</translation>
    </message>
    <message>
        <source>Dele&amp;te</source>
        <translation>L&amp;öschen</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Del</translation>
    </message>
    <message>
        <source>&amp;Bring Forward</source>
        <translation>Nach v&amp;orn</translation>
    </message>
    <message>
        <source>Shift+PgUp</source>
        <translation>Shift+PgUp</translation>
    </message>
    <message>
        <source>Send Bac&amp;kward</source>
        <translation>Nach hi&amp;nten</translation>
    </message>
    <message>
        <source>Shift+PgDown</source>
        <translation>Shift+PgDown</translation>
    </message>
    <message>
        <source>Re&amp;size...</source>
        <translation>&amp;Größe ändern ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+R</source>
        <translation>Ctrl+Shift+R</translation>
    </message>
    <message>
        <source>C&amp;anvas Size...</source>
        <translation>&amp;Leinwandgröße ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>Ctrl+R</source>
        <translation>Ctrl+R</translation>
    </message>
    <message>
        <source>Rotate &amp;Left</source>
        <translation>Nach l&amp;inks drehen</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Rotate by 180 &amp;Degrees</source>
        <translation>Um 180 Grad &amp;drehen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+L</source>
        <translation>Ctrl+Shift+L</translation>
    </message>
    <message>
        <source>Flip &amp;Horizontally</source>
        <translation>&amp;Horizontal spiegeln</translation>
    </message>
    <message>
        <source>Ctrl+Shift+H</source>
        <translation>Ctrl+Shift+H</translation>
    </message>
    <message>
        <source>Flip &amp;Vertically</source>
        <translation>&amp;Vertikal spiegeln</translation>
    </message>
    <message>
        <source>Ctrl+Shift+V</source>
        <translation>Ctrl+Shift+V</translation>
    </message>
    <message>
        <source>Ctrl+Shift+K</source>
        <translation>Ctrl+Shift+K</translation>
    </message>
    <message>
        <source>&amp;Copy %1</source>
        <translation>%1 &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Blur</source>
        <translation>Weichzeichnen</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Blurring well-known text protects it less than covering it does.</source>
        <translation>Bekannter Text ist weichgezeichnet weniger gut geschützt als abgedeckt.</translation>
    </message>
    <message>
        <source>Pixelate</source>
        <translation>Verpixeln</translation>
    </message>
    <message>
        <source>P</source>
        <translation>P</translation>
    </message>
    <message>
        <source>Solid Cover</source>
        <translation>Abdecken</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Copy Text</source>
        <translation>Text kopieren</translation>
    </message>
    <message>
        <source>T</source>
        <translation>T</translation>
    </message>
    <message>
        <source>Cop&amp;y Text</source>
        <translation>T&amp;ext kopieren</translation>
    </message>
    <message>
        <source>Ctrl+T</source>
        <translation>Ctrl+T</translation>
    </message>
    <message>
        <source>Read C&amp;odes</source>
        <translation>Code&amp;s lesen</translation>
    </message>
    <message>
        <source>Save with &amp;Layers...</source>
        <translation>Mit &amp;Ebenen speichern ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Y</source>
        <translation>Ctrl+Shift+Y</translation>
    </message>
    <message>
        <source>Back&amp;drop...</source>
        <translation>&amp;Hintergrund...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+B</source>
        <translation>Ctrl+Shift+B</translation>
    </message>
    <message>
        <source>H&amp;ide Text...</source>
        <translation>Text ver&amp;bergen ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+X</source>
        <translation>Ctrl+Shift+X</translation>
    </message>
    <message>
        <source>Rotate Ri&amp;ght</source>
        <translation>Nach re&amp;chts drehen</translation>
    </message>
    <message>
        <source>Last Area</source>
        <translation>Letzter Bereich</translation>
    </message>
    <message>
        <source>Capture Last Area</source>
        <translation>Letzten Bereich aufnehmen</translation>
    </message>
    <message>
        <source>Active Window</source>
        <translation>Aktives Fenster</translation>
    </message>
    <message>
        <source>Capture Active Window</source>
        <translation>Aktives Fenster aufnehmen</translation>
    </message>
    <message>
        <source>Monitor</source>
        <translation>Monitor</translation>
    </message>
    <message>
        <source>Capture Monitor</source>
        <translation>Monitor aufnehmen</translation>
    </message>
    <message>
        <source>Full Screen to a File</source>
        <translation>Ganzer Bildschirm in eine Datei</translation>
    </message>
    <message>
        <source>Capture Full Screen to a File</source>
        <translation>Ganzen Bildschirm in eine Datei aufnehmen</translation>
    </message>
    <message>
        <source>No hot key does this.</source>
        <translation>Dafür gibt es kein Tastenkürzel.</translation>
    </message>
    <message>
        <source>Hot key: %1</source>
        <translation>Tastenkürzel: %1</translation>
    </message>
    <message>
        <source>The program is just starting.</source>
        <translation>Das Programm startet gerade.</translation>
    </message>
    <message>
        <source>%1 is taken by another program.</source>
        <translation>%1 ist von einem anderen Programm belegt.</translation>
    </message>
    <message>
        <source>Pi&amp;n to the Screen</source>
        <translation>An den Bildschir&amp;m heften</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Size of the picture</source>
        <translation>Größe des Bildes</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Real Size</source>
        <translation>&amp;Originalgröße</translation>
    </message>
    <message>
        <source>&amp;Fit to the Window</source>
        <translation>In das &amp;Fenster einpassen</translation>
    </message>
    <message>
        <source>Ctrl+9</source>
        <translation>Ctrl+9</translation>
    </message>
    <message>
        <source>&amp;Zoom...</source>
        <translation>&amp;Zoom ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+M</source>
        <translation>Ctrl+Shift+M</translation>
    </message>
    <message>
        <source>&amp;Sharp Pixels when Enlarged</source>
        <translation>&amp;Scharfe Bildpunkte beim Vergrößern</translation>
    </message>
    <message>
        <source>Ctrl+Shift+P</source>
        <translation>Ctrl+Shift+P</translation>
    </message>
    <message>
        <source>Next Pin</source>
        <translation>Nächstes angeheftetes Bild</translation>
    </message>
    <message>
        <source>Ctrl+Shift+N</source>
        <translation>Ctrl+Shift+N</translation>
    </message>
    <message>
        <source>Close All Pins</source>
        <translation>Alle angehefteten Bilder schließen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Close Ot&amp;hers</source>
        <translation>A&amp;ndere schließen</translation>
    </message>
    <message>
        <source>Open &amp;Folder</source>
        <translation>&amp;Ordner öffnen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+O</source>
        <translation>Ctrl+Shift+O</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>E&amp;infügen</translation>
    </message>
    <message>
        <source>Ctrl+V</source>
        <translation>Ctrl+V</translation>
    </message>
    <message>
        <source>Line &amp;Colour...</source>
        <translation>Linien&amp;farbe ...</translation>
    </message>
    <message>
        <source>&amp;Style...</source>
        <translation>&amp;Stil ...</translation>
    </message>
    <message>
        <source>Line &amp;Width...</source>
        <translation>Linien&amp;breite ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+I</source>
        <translation>Ctrl+Shift+I</translation>
    </message>
    <message>
        <source>&amp;Font...</source>
        <translation>S&amp;chriftart ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+F</source>
        <translation>Ctrl+Shift+F</translation>
    </message>
    <message>
        <source>Font Si&amp;ze...</source>
        <translation>Schrift&amp;größe ...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+U</source>
        <translation>Ctrl+Shift+U</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>Werk&amp;zeuge</translation>
    </message>
    <message>
        <source>Ctrl+Shift+D</source>
        <translation>Ctrl+Shift+D</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>The program goes on in the tray. &quot;Quit&quot; in the menu there ends it.</source>
        <translation>Das Programm läuft neben der Uhr weiter. „Beenden“ im Menü dort beendet es.</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>Zuletzt &amp;verwendet</translation>
    </message>
</context>
<context>
    <name>MarkingOverlay</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Read the text</source>
        <translation>Text auslesen</translation>
    </message>
    <message>
        <source>Take after a countdown</source>
        <translation>Nach Countdown aufnehmen</translation>
    </message>
    <message>
        <source>Last area again</source>
        <translation>Letzter Bereich noch einmal</translation>
    </message>
    <message>
        <source>Nothing has been marked here before</source>
        <translation>Hier wurde noch nichts markiert</translation>
    </message>
    <message>
        <source>%1 is copied</source>
        <translation>%1 ist kopiert</translation>
    </message>
    <message>
        <source>Copy the colour %1</source>
        <translation>Farbe %1 kopieren</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>Anheften</translation>
    </message>
</context>
<context>
    <name>MenuCapture</name>
    <message>
        <source>The menu gave no picture</source>
        <translation>Das Menü gab kein Bild her</translation>
    </message>
    <message>
        <source>Open a menu, and let the pointer rest on it</source>
        <translation>Öffnen Sie ein Menü, und lassen Sie den Zeiger darauf ruhen</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>gives up</source>
        <translation>bricht ab</translation>
    </message>
</context>
<context>
    <name>NameTemplate</name>
    <message>
        <source>Character %1: &quot;}&quot; without a &quot;{&quot; before it. Double it to have the brace itself.</source>
        <translation>Zeichen %1: „}“ ohne „{“ davor. Für die Klammer selbst schreiben Sie sie doppelt.</translation>
    </message>
    <message>
        <source>Character %1: &quot;{&quot; without a &quot;}&quot; behind it. Double it to have the brace itself.</source>
        <translation>Zeichen %1: „{“ ohne „}“ dahinter. Für die Klammer selbst schreiben Sie sie doppelt.</translation>
    </message>
    <message>
        <source>Character %1: {%2} is not known.</source>
        <translation>Zeichen %1: {%2} ist nicht bekannt.</translation>
    </message>
    <message>
        <source>Character %1: {%2} takes no &quot;%3&quot;.</source>
        <translation>Zeichen %1: Bei {%2} geht „%3“ nicht.</translation>
    </message>
    <message>
        <source>Character %1: the quote in {%2} is not closed.</source>
        <translation>Zeichen %1: Das Anführungszeichen in {%2} ist nicht geschlossen.</translation>
    </message>
</context>
<context>
    <name>NoticeBar</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>PictureIntake</name>
    <message>
        <source>This is text, and no picture.</source>
        <translation>Das ist Text und kein Bild.</translation>
    </message>
    <message>
        <source>There is no picture that can be read.</source>
        <translation>Es ist kein Bild da, das gelesen werden kann.</translation>
    </message>
    <message>
        <source>Only the first %1 pictures were opened; %2 more were left out.</source>
        <translation>Nur die ersten %1 Bilder wurden geöffnet, %2 weitere nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on this computer. Nothing was fetched; save the picture first, and open it then.</source>
        <translation>„%1“ liegt nicht auf diesem Rechner. Nichts wurde geholt; speichern Sie das Bild zuerst und öffnen Sie es dann.</translation>
    </message>
    <message>
        <source>There are no pictures in the folder &quot;%1&quot;.</source>
        <translation>Im Ordner „%1“ sind keine Bilder.</translation>
    </message>
    <message>
        <source>Files that are no pictures were not opened: %1.</source>
        <translation>Dateien, die keine Bilder sind, wurden nicht geöffnet: %1.</translation>
    </message>
    <message>
        <source>There is nothing on the clipboard.</source>
        <translation>In der Zwischenablage ist nichts.</translation>
    </message>
</context>
<context>
    <name>PictureReading</name>
    <message>
        <source>Reading the text...</source>
        <translation>Der Text wird gelesen ...</translation>
    </message>
    <message numerus="yes">
        <source>%n character(s) copied: %1</source>
        <translation>
            <numerusform>%n Zeichen kopiert: %1</numerusform>
            <numerusform>%n Zeichen kopiert: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>No text was found.</source>
        <translation>Es wurde kein Text gefunden.</translation>
    </message>
    <message>
        <source>Texts in your language are read better with the package %1.</source>
        <translation>Texte in Ihrer Sprache werden mit dem Paket %1 besser gelesen.</translation>
    </message>
    <message>
        <source>Reading codes...</source>
        <translation>Codes werden gelesen ...</translation>
    </message>
    <message>
        <source>No QR or bar code was found.</source>
        <translation>Es wurde kein QR- oder Strichcode gefunden.</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>%1 (%2 of %3)</source>
        <translation>%1 (%2 von %3)</translation>
    </message>
    <message>
        <source>Nothing was found that you may want to hide. Look at the picture yourself: recognition can miss something.</source>
        <translation>Es wurde nichts gefunden, was Sie verbergen wollen könnten. Sehen Sie selbst nach: Die Texterkennung kann etwas übersehen.</translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) to hide found in %1.</source>
        <translation>
            <numerusform>%n Stelle in %1 gefunden, die Sie verbergen können.</numerusform>
            <numerusform>%n Stellen in %1 gefunden, die Sie verbergen können.</numerusform>
        </translation>
    </message>
    <message>
        <source>Sh&amp;ow</source>
        <translation>An&amp;zeigen</translation>
    </message>
    <message numerus="yes">
        <source>%n place(s) hidden. Look at the picture: recognition can miss something.</source>
        <translation>
            <numerusform>%n Stelle verborgen. Sehen Sie sich das Bild an: Die Texterkennung kann etwas übersehen.</numerusform>
            <numerusform>%n Stellen verborgen. Sehen Sie sich das Bild an: Die Texterkennung kann etwas übersehen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was hidden: the picture was changed or closed meanwhile.</source>
        <translation>Es wurde nichts verborgen: Das Bild wurde inzwischen geändert oder geschlossen.</translation>
    </message>
    <message>
        <source>The picture is not there yet. Try again when it is shown.</source>
        <translation>Das Bild ist noch nicht da. Versuchen Sie es noch einmal, wenn es zu sehen ist.</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>Ko&amp;pieren</translation>
    </message>
    <message>
        <source>The text was not read.</source>
        <translation>Der Text wurde nicht gelesen.</translation>
    </message>
</context>
<context>
    <name>Pictures</name>
    <message>
        <source>The picture shows the visible part of the window: this desktop keeps no pictures of what is covered or lies beyond the screen.</source>
        <translation>Das Bild zeigt den sichtbaren Teil des Fensters: Dieser Desktop hat keine Bilder von dem, was verdeckt ist oder außerhalb des Bildschirms liegt.</translation>
    </message>
</context>
<context>
    <name>Pin</name>
    <message>
        <source>%1 x %2 pixels, zoom %3, opacity %4</source>
        <translation>%1 x %2 Pixel, Zoom %3, Deckkraft %4</translation>
    </message>
    <message>
        <source>This desktop shows no translucent windows</source>
        <translation>Dieser Desktop zeigt keine durchsichtigen Fenster</translation>
    </message>
    <message>
        <source>Opacity %1</source>
        <translation>Deckkraft %1</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Mark Up in a Tab</source>
        <translation>In einem &amp;Tab bearbeiten</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Real Size</source>
        <translation>&amp;Originalgröße</translation>
    </message>
    <message>
        <source>More &amp;Translucent</source>
        <translation>&amp;Durchsichtiger</translation>
    </message>
    <message>
        <source>&amp;Less Translucent</source>
        <translation>&amp;Weniger durchsichtig</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close &amp;All Pins</source>
        <translation>&amp;Alle angehefteten Bilder schließen</translation>
    </message>
    <message>
        <source>Pinned picture</source>
        <translation>Angeheftetes Bild</translation>
    </message>
    <message>
        <source>Pinned picture: %1</source>
        <translation>Angeheftetes Bild: %1</translation>
    </message>
</context>
<context>
    <name>Pins</name>
    <message>
        <source>Nothing is pinned to the screen.</source>
        <translation>An den Bildschirm ist nichts geheftet.</translation>
    </message>
    <message>
        <source>Keeping the pins...</source>
        <translation>Angeheftete Bilder werden aufbewahrt ...</translation>
    </message>
    <message>
        <source>The pins can&apos;t be kept for the next start: %1</source>
        <translation>Die angehefteten Bilder können nicht für den nächsten Start aufbewahrt werden: %1</translation>
    </message>
</context>
<context>
    <name>PortalCast</name>
    <message>
        <source>The desktop did not show its screens in time.</source>
        <translation>Der Desktop hat seine Bildschirme nicht rechtzeitig gezeigt.</translation>
    </message>
    <message>
        <source>The desktop&apos;s screens can&apos;t be watched: PipeWire gives no pictures. Is it running?</source>
        <translation>Die Bildschirme des Desktops können nicht beobachtet werden: PipeWire gibt keine Bilder. Läuft es?</translation>
    </message>
    <message>
        <source>This desktop lets no program watch its screens.</source>
        <translation>Dieser Desktop lässt kein Programm seine Bildschirme beobachten.</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal failed before it showed the screens. Try again.</source>
        <translation>Das Portal des Desktops ist ausgefallen, bevor es die Bildschirme gezeigt hat. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>You have cancelled the desktop&apos;s question, so the screen can&apos;t be watched.</source>
        <translation>Sie haben die Frage des Desktops abgebrochen, so dass der Bildschirm nicht beobachtet werden kann.</translation>
    </message>
    <message>
        <source>The desktop has stopped showing its screens.</source>
        <translation>Der Desktop zeigt seine Bildschirme nicht mehr.</translation>
    </message>
    <message>
        <source>The desktop failed to show its screens. Try again.</source>
        <translation>Der Desktop konnte seine Bildschirme nicht zeigen. Versuchen Sie es noch einmal.</translation>
    </message>
</context>
<context>
    <name>PortalRoute</name>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>Der Desktop hat sein Bild nicht rechtzeitig gegeben.</translation>
    </message>
    <message>
        <source>The desktop&apos;s portal failed before it gave a picture. Try again.</source>
        <translation>Das Portal des Desktops ist ausgefallen, bevor es ein Bild gegeben hat. Bitte noch einmal versuchen.</translation>
    </message>
    <message>
        <source>You have cancelled the desktop&apos;s question, so there is no picture.</source>
        <translation>Die Frage des Desktops wurde abgebrochen, darum gibt es kein Bild.</translation>
    </message>
    <message>
        <source>The desktop failed to take a picture of the screen.</source>
        <translation>Der Desktop konnte kein Bild des Bildschirms aufnehmen.</translation>
    </message>
    <message>
        <source>The file with the desktop&apos;s picture is not there.</source>
        <translation>Die Datei mit dem Bild des Desktops ist nicht da.</translation>
    </message>
    <message>
        <source>What the desktop gave is no picture of its screens.</source>
        <translation>Was der Desktop gegeben hat, ist kein Bild seiner Bildschirme.</translation>
    </message>
    <message>
        <source>This desktop gives programs no pictures of the screen: its portal has no part for that, or that does not start.</source>
        <translation>Dieser Desktop gibt Programmen keine Bilder des Bildschirms: Sein Portal hat keinen Teil dafür, oder der startet nicht.</translation>
    </message>
    <message>
        <source>The desktop lets this program take no pictures of the screen, since that has been refused. It can be changed in the desktop&apos;s settings for applications, on GNOME under Apps, Snap Workbench, where they list it; else have the desktop ask again.</source>
        <translation>Der Desktop lässt dieses Programm keine Bilder vom Bildschirm aufnehmen, da das abgelehnt wurde. Ändern lässt sich das in den Desktop-Einstellungen für Anwendungen, in GNOME unter Apps, Snap Workbench, sofern sie es dort aufführen; sonst lassen Sie den Desktop noch einmal fragen.</translation>
    </message>
</context>
<context>
    <name>PrivateFolder</name>
    <message>
        <source>It belongs to somebody else, or others may write to it.</source>
        <translation>Er gehört jemand anderem, oder andere dürfen darin schreiben.</translation>
    </message>
</context>
<context>
    <name>ProgressPlate</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel (Esc)</source>
        <translation>Abbrechen (Esc)</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 existiert bereits.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>QPictureDocument</name>
    <message>
        <source>untitled%1</source>
        <translation>unbenannt%1</translation>
    </message>
    <message>
        <source>There is no picture.</source>
        <translation>Es gibt kein Bild.</translation>
    </message>
    <message>
        <source>This is not a file.</source>
        <translation>Das ist keine Datei.</translation>
    </message>
    <message>
        <source>The drawing refers to other files, which are not read.</source>
        <translation>Die Zeichnung verweist auf andere Dateien, die nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The drawing is damaged.</source>
        <translation>Die Zeichnung ist beschädigt.</translation>
    </message>
    <message>
        <source>The drawing is too complicated.</source>
        <translation>Die Zeichnung ist zu kompliziert.</translation>
    </message>
    <message>
        <source>The picture needs %1 of memory, and only %2 can be used now.</source>
        <translation>Das Bild braucht %1 Speicher, und nur %2 sind jetzt verfügbar.</translation>
    </message>
    <message>
        <source>The drawing can&apos;t be unpacked or is too large.</source>
        <translation>Die Zeichnung lässt sich nicht entpacken oder ist zu groß.</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>Der Speicher reicht nicht aus.</translation>
    </message>
    <message>
        <source>A file of this kind can&apos;t be wider or higher than %1 pixels.</source>
        <translation>Eine Datei dieser Art kann nicht breiter oder höher als %1 Pixel sein.</translation>
    </message>
</context>
<context>
    <name>RecentFiles</name>
    <message>
        <source>&quot;%1&quot; is not there any more.</source>
        <translation>„%1“ gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation>&amp;Leeren</translation>
    </message>
</context>
<context>
    <name>RegionOverlay</name>
    <message>
        <source>Finish(Enter)</source>
        <translation>Fertig (Eingabe)</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Drag: mark an area
Return: take it
Ctrl+C: copy it     Ctrl+S: save it     T: read its text
R: the last area again     C: copy the colour at the pointer
Esc: give up</source>
        <translation>Ziehen: Bereich markieren
Eingabe: aufnehmen
Strg+C: kopieren     Strg+S: speichern     T: Text auslesen
R: letzter Bereich noch einmal     C: Farbe am Zeiger kopieren
Esc: abbrechen</translation>
    </message>
</context>
<context>
    <name>ResizeDialog</name>
    <message>
        <source>Resize</source>
        <translation>Größe ändern</translation>
    </message>
    <message>
        <source>&amp;Keep proportions</source>
        <translation>&amp;Seitenverhältnis beibehalten</translation>
    </message>
    <message>
        <source>pixels</source>
        <translation>Pixel</translation>
    </message>
    <message>
        <source>per cent</source>
        <translation>Prozent</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>&amp;Breite</translation>
    </message>
    <message>
        <source>&amp;Height</source>
        <translation>&amp;Höhe</translation>
    </message>
    <message>
        <source>&amp;Unit</source>
        <translation>&amp;Einheit</translation>
    </message>
</context>
<context>
    <name>ScreencopyRoute</name>
    <message>
        <source>The desktop did not give its picture in time.</source>
        <translation>Der Desktop hat sein Bild nicht rechtzeitig gegeben.</translation>
    </message>
</context>
<context>
    <name>ScrollCapture</name>
    <message>
        <source>Scrolling to the top</source>
        <translation>Scrollt zum Anfang</translation>
    </message>
    <message>
        <source>Putting it back</source>
        <translation>Stellt die alte Stelle wieder her</translation>
    </message>
    <message>
        <source>%1 pixels</source>
        <translation>%1 Pixel</translation>
    </message>
    <message>
        <source>Nothing scrolls there: it was taken as it is</source>
        <translation>Dort lässt sich nichts scrollen: Es wurde aufgenommen, wie es ist</translation>
    </message>
    <message>
        <source>The content could not be followed</source>
        <translation>Dem Inhalt war nicht zu folgen</translation>
    </message>
    <message>
        <source>Nothing new came for a minute</source>
        <translation>Eine Minute lang kam nichts Neues</translation>
    </message>
    <message>
        <source>The picture has reached its limit of %1 pixels</source>
        <translation>Das Bild hat seine Grenze von %1 Pixeln erreicht</translation>
    </message>
    <message>
        <source>The content could not be followed further</source>
        <translation>Dem Inhalt war nicht weiter zu folgen</translation>
    </message>
    <message>
        <source>The program did not answer for a minute</source>
        <translation>Das Programm hat eine Minute lang nicht geantwortet</translation>
    </message>
    <message>
        <source>The content could not be followed further to the right</source>
        <translation>Der Inhalt konnte nach rechts nicht weiter verfolgt werden</translation>
    </message>
    <message>
        <source>There is not enough memory for all of it</source>
        <translation>Für alles reicht der Speicher nicht</translation>
    </message>
    <message>
        <source>%1 pixels, after %2 columns</source>
        <translation>%1 Pixel, nach %2 Spalten</translation>
    </message>
    <message>
        <source>The picture has reached its limit: %1 pixels each way, and %2 million in all</source>
        <translation>Das Bild hat seine Grenze erreicht: %1 Pixel je Richtung und %2 Millionen im Ganzen</translation>
    </message>
    <message>
        <source>What lies beside it could not be followed</source>
        <translation>Was daneben liegt, konnte nicht verfolgt werden</translation>
    </message>
    <message>
        <source>The content could not be put back to where it was</source>
        <translation>Der Inhalt konnte nicht dorthin zurückgestellt werden, wo er war</translation>
    </message>
    <message>
        <source>One click of the wheel leads too far to be followed here: make the window higher, or scroll it by hand</source>
        <translation>Eine Raste des Mausrads führt hier zu weit, um verfolgt zu werden: Machen Sie das Fenster höher, oder scrollen Sie selbst</translation>
    </message>
    <message>
        <source>It scrolls sideways only: hold Shift to take what lies beside it</source>
        <translation>Es scrollt nur seitwärts: Halten Sie die Umschalttaste, um auch aufzunehmen, was daneben liegt</translation>
    </message>
</context>
<context>
    <name>ScrolledWindow</name>
    <message>
        <source>The window left the screen</source>
        <translation>Das Fenster ist vom Bildschirm verschwunden</translation>
    </message>
    <message>
        <source>The window changed its size</source>
        <translation>Das Fenster hat seine Größe geändert</translation>
    </message>
    <message>
        <source>A menu</source>
        <translation>Ein Menü</translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>%1 is in front: waiting until it is gone</source>
        <translation>%1 ist davor: Es wird gewartet, bis es weg ist</translation>
    </message>
    <message>
        <source>%1 came in front</source>
        <translation>%1 kam davor</translation>
    </message>
    <message>
        <source>Let go of all keys and buttons</source>
        <translation>Lassen Sie alle Tasten los</translation>
    </message>
    <message>
        <source>Bring the window back: its content is not where it was</source>
        <translation>Holen Sie das Fenster zurück: Sein Inhalt steht nicht mehr, wo er war</translation>
    </message>
</context>
<context>
    <name>SettingsSaver</name>
    <message>
        <source>The settings can&apos;t be saved: %1</source>
        <translation>Die Einstellungen lassen sich nicht speichern: %1</translation>
    </message>
</context>
<context>
    <name>SizeDialog</name>
    <message>
        <source>A picture has 32,767 pixels a side at most, and 400 million in all.</source>
        <translation>Ein Bild hat höchstens 32.767 Pixel je Seite und 400 Millionen im Ganzen.</translation>
    </message>
    <message>
        <source>There is too little memory for that.</source>
        <translation>Dafür reicht der Speicher nicht.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Result: %1 × %2 pixels</source>
        <translation>Ergebnis: %1 × %2 Pixel</translation>
    </message>
</context>
<context>
    <name>SnapWb</name>
    <message>
        <source>Show this help.</source>
        <translation>Diese Hilfe zeigen.</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>Die Version zeigen.</translation>
    </message>
    <message>
        <source>Write the picture to FILE, a PNG file; - is standard output.</source>
        <translation>Das Bild in die PNG-Datei FILE schreiben; - ist die Standardausgabe.</translation>
    </message>
    <message>
        <source>Replace FILE if there is one.</source>
        <translation>FILE ersetzen, falls es sie schon gibt.</translation>
    </message>
    <message>
        <source>Copy the picture to the clipboard.</source>
        <translation>Das Bild in die Zwischenablage kopieren.</translation>
    </message>
    <message>
        <source>Wait N seconds before.</source>
        <translation>Vorher N Sekunden warten.</translation>
    </message>
    <message>
        <source>Show the pointer in the picture.</source>
        <translation>Den Zeiger im Bild zeigen.</translation>
    </message>
    <message>
        <source>Open picture files, each in a tab.</source>
        <translation>Bilddateien öffnen, jede in einem Tab.</translation>
    </message>
    <message>
        <source>Tell how far a grab has come.</source>
        <translation>Sagen, wie weit eine Aufnahme ist.</translation>
    </message>
    <message>
        <source>Usage:</source>
        <translation>Aufruf:</translation>
    </message>
    <message>
        <source>One kind of picture is needed: %1.</source>
        <translation>Eine Art von Bild wird gebraucht: %1.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; does not end with .png, and other formats are not written.</source>
        <translation>„%1“ endet nicht auf .png, und andere Formate werden nicht geschrieben.</translation>
    </message>
    <message>
        <source>The delay is a number of seconds, from 0 to %1.</source>
        <translation>Die Verzögerung ist eine Anzahl von Sekunden, von 0 bis %1.</translation>
    </message>
    <message>
        <source>The option --%1 belongs to &quot;grab&quot;.</source>
        <translation>Die Option --%1 gehört zu „grab“.</translation>
    </message>
    <message>
        <source>&quot;grab KIND&quot;, &quot;open FILE...&quot; or &quot;state&quot; is needed; --help tells more.</source>
        <translation>Gebraucht wird „grab KIND“, „open FILE...“ oder „state“; mehr sagt --help.</translation>
    </message>
    <message>
        <source>The picture was given up.</source>
        <translation>Die Aufnahme wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Another picture is being taken.</source>
        <translation>Es wird gerade ein anderes Bild aufgenommen.</translation>
    </message>
    <message>
        <source>The program has ended.</source>
        <translation>Das Programm hat sich beendet.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder.</source>
        <translation>„%1“ ist ein Ordner.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is there already; --force replaces it.</source>
        <translation>„%1“ gibt es schon; --force ersetzt die Datei.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be written to the folder &quot;%2&quot;.</source>
        <translation>„%1“ kann nicht in den Ordner „%2“ geschrieben werden.</translation>
    </message>
    <message>
        <source>The program does not start.</source>
        <translation>Das Programm startet nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; could not be written.</source>
        <translation>„%1“ konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be read.</source>
        <translation>„%1“ kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The program does not run.</source>
        <translation>Das Programm läuft nicht.</translation>
    </message>
    <message>
        <source>There is no session bus.</source>
        <translation>Es gibt keinen Sitzungsbus.</translation>
    </message>
    <message>
        <source>Take a picture: %1. With neither --output nor --copy it opens in a tab. &quot;window&quot; and &quot;scroll&quot; begin the same: a click takes the window, and Ctrl+click or Return all that scrolls in it.</source>
        <translation>Ein Bild aufnehmen: %1. Ohne --output und --copy öffnet es sich in einem Tab. „window“ und „scroll“ beginnen gleich: Ein Klick nimmt das Fenster, Strg+Klick oder die Eingabetaste alles, was darin scrollt.</translation>
    </message>
    <message>
        <source>--force belongs to --output.</source>
        <translation>--force gehört zu --output.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one word too many.</source>
        <translation>„%1“ ist ein Wort zu viel.</translation>
    </message>
    <message>
        <source>--%1 can be there only once.</source>
        <translation>--%1 darf nur einmal vorkommen.</translation>
    </message>
</context>
<context>
    <name>StartPanel</name>
    <message>
        <source>Take a picture of the screen</source>
        <translation>Ein Bild vom Bildschirm aufnehmen</translation>
    </message>
    <message>
        <source>These keys work in front of any program.</source>
        <translation>Diese Tasten wirken vor jedem Programm.</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Full Screen</source>
        <translation>Ganzer Bildschirm</translation>
    </message>
    <message>
        <source>Or mark up a picture that you have: drop it here, or</source>
        <translation>Oder ein vorhandenes Bild beschriften: hierher ziehen oder</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>Öffnen ...</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
</context>
<context>
    <name>StyleControls</name>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
    <message>
        <source>Next Number</source>
        <translation>Nächste Nummer</translation>
    </message>
    <message>
        <source>Number of the next marker, or of the one that is chosen:</source>
        <translation>Was die nächste Nummer zeigt, oder die ausgewählte:</translation>
    </message>
</context>
<context>
    <name>StyleMenu</name>
    <message>
        <source>Fill</source>
        <translation>Füllung</translation>
    </message>
    <message>
        <source>&amp;No Fill</source>
        <translation>&amp;Keine Füllung</translation>
    </message>
    <message>
        <source>&amp;Translucent Fill</source>
        <translation>&amp;Durchscheinende Füllung</translation>
    </message>
    <message>
        <source>&amp;Solid Fill</source>
        <translation>&amp;Volle Füllung</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>S&amp;olid Line</source>
        <translation>Durchge&amp;zogene Linie</translation>
    </message>
    <message>
        <source>&amp;Dashed Line</source>
        <translation>&amp;Gestrichelte Linie</translation>
    </message>
    <message>
        <source>Dott&amp;ed Line</source>
        <translation>Ge&amp;punktete Linie</translation>
    </message>
    <message>
        <source>Arrow Heads</source>
        <translation>Pfeilspitzen</translation>
    </message>
    <message>
        <source>One &amp;Head</source>
        <translation>&amp;Eine Spitze</translation>
    </message>
    <message>
        <source>&amp;Both Heads</source>
        <translation>&amp;Beide Spitzen</translation>
    </message>
    <message>
        <source>Open He&amp;ad</source>
        <translation>&amp;Offene Spitze</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>&amp;Plain Text</source>
        <translation>&amp;Schlichter Text</translation>
    </message>
    <message>
        <source>Text on a &amp;Ground</source>
        <translation>&amp;Text auf Grund</translation>
    </message>
    <message>
        <source>O&amp;utlined Text</source>
        <translation>Text mit &amp;Umriss</translation>
    </message>
    <message>
        <source>Shado&amp;w</source>
        <translation>Sch&amp;atten</translation>
    </message>
    <message>
        <source>&amp;Round Spotlight</source>
        <translation>&amp;Rundes Spotlicht</translation>
    </message>
    <message>
        <source>Ne&amp;xt Number...</source>
        <translation>&amp;Nächste Nummer ...</translation>
    </message>
</context>
<context>
    <name>TabWidget</name>
    <message>
        <source>Close Tab</source>
        <translation>Tab schließen</translation>
    </message>
</context>
<context>
    <name>TakeButtons</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the picture (Ctrl+C)</source>
        <translation>Bild kopieren (Strg+C)</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save the picture as a file (Ctrl+S)</source>
        <translation>Bild als Datei speichern (Strg+S)</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Read the text in the picture, and copy it (T)</source>
        <translation>Text im Bild auslesen und kopieren (T)</translation>
    </message>
    <message>
        <source>Take</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Take the picture (Return)</source>
        <translation>Bild aufnehmen (Eingabe)</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>Anheften</translation>
    </message>
    <message>
        <source>Keep the picture above all windows (P)</source>
        <translation>Das Bild über allen Fenstern halten (P)</translation>
    </message>
</context>
<context>
    <name>TextReader</name>
    <message>
        <source>Reading text needs the package %1.</source>
        <translation>Zum Lesen von Text fehlt das Paket %1.</translation>
    </message>
    <message>
        <source>There is not enough memory to read the picture.</source>
        <translation>Der Speicher reicht nicht, um das Bild zu lesen.</translation>
    </message>
    <message>
        <source>Reading took longer than %1 seconds and was given up. A part of the picture takes less.</source>
        <translation>Das Lesen dauerte länger als %1 Sekunden und wurde abgebrochen. Ein Teil des Bildes geht schneller.</translation>
    </message>
</context>
<context>
    <name>UnsavedPictures</name>
    <message>
        <source>Pictures that had not been saved are back: %1</source>
        <translation>Bilder, die nicht gespeichert waren, sind wieder da: %1</translation>
    </message>
    <message>
        <source>A picture that had not been saved is damaged. What is left of it is in %1.</source>
        <translation>Ein Bild, das nicht gespeichert war, ist beschädigt. Was davon übrig ist, liegt in %1.</translation>
    </message>
    <message>
        <source>A later version of this program has left a picture in %1. It was not touched.</source>
        <translation>Eine neuere Version dieses Programms hat ein Bild in %1 hinterlassen. Es wurde nicht angetastet.</translation>
    </message>
    <message>
        <source>What is not saved can&apos;t be kept for the next start at the moment: %1</source>
        <translation>Was nicht gespeichert ist, kann zurzeit nicht für den nächsten Start aufgehoben werden: %1</translation>
    </message>
    <message>
        <source>Bringing back &quot;%1&quot;...</source>
        <translation>„%1“ wird wiederhergestellt ...</translation>
    </message>
</context>
<context>
    <name>WaylandHands</name>
    <message>
        <source>To turn the wheel over what is captured</source>
        <translation>Um das Rad über dem zu drehen, was aufgenommen wird</translation>
    </message>
</context>
<context>
    <name>WindowFace</name>
    <message>
        <source>More tools</source>
        <translation>Weitere Werkzeuge</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Ctrl+Shift+E</translation>
    </message>
    <message>
        <source>More commands</source>
        <translation>Weitere Befehle</translation>
    </message>
    <message>
        <source>Ctrl+Shift+G</source>
        <translation>Ctrl+Shift+G</translation>
    </message>
    <message>
        <source>More styles</source>
        <translation>Weitere Stile</translation>
    </message>
    <message>
        <source>Ctrl+Shift+T</source>
        <translation>Ctrl+Shift+T</translation>
    </message>
</context>
<context>
    <name>WindowsPreView</name>
    <message>
        <source>All Windows</source>
        <translation>Alle Fenster</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>Sichtbare</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Filter by name</source>
        <translation>Nach Namen filtern</translation>
    </message>
    <message>
        <source>Size of the thumbnails</source>
        <translation>Größe der Vorschaubilder</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>There is no window to show.</source>
        <translation>Es gibt kein Fenster zu zeigen.</translation>
    </message>
    <message>
        <source>No window&apos;s application or title contains this.</source>
        <translation>Kein Fenster hat das im Namen der Anwendung oder im Titel.</translation>
    </message>
</context>
<context>
    <name>Workbench</name>
    <message>
        <source>Opening &quot;%1&quot;...</source>
        <translation>„%1“ wird geöffnet ...</translation>
    </message>
    <message>
        <source>&quot;%1&quot; can&apos;t be shown: %2</source>
        <translation>„%1“ kann nicht angezeigt werden: %2</translation>
    </message>
    <message>
        <source>Showing &quot;%1&quot;...</source>
        <translation>„%1“ wird angezeigt ...</translation>
    </message>
    <message>
        <source>&quot;%1&quot;: %2</source>
        <translation>„%1“: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was closed meanwhile.</source>
        <translation>„%1“ wurde inzwischen geschlossen.</translation>
    </message>
    <message>
        <source>%1 × %2 px</source>
        <translation>%1 × %2 px</translation>
    </message>
</context>
<context>
    <name>ZoomBox</name>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>ZoomControls</name>
    <message>
        <source>%1 × %2 px</source>
        <translation>%1 × %2 px</translation>
    </message>
</context>
<context>
    <name>dlgFreeHand</name>
    <message>
        <source>Finish(Enter)</source>
        <translation>Fertig (Eingabe)</translation>
    </message>
    <message>
        <source>Delete last point</source>
        <translation>Letzten Punkt löschen</translation>
    </message>
    <message>
        <source>Clear all points</source>
        <translation>Alle Punkte löschen</translation>
    </message>
    <message>
        <source>Click: set a corner     Drag: draw freehand
Return, a double click: close it and take it
Ctrl+C: copy it     Ctrl+S: save it     T: read its text
R: the last area again     C: copy the colour at the pointer
Esc: give up</source>
        <translation>Klicken: Ecke setzen     Ziehen: freihändig zeichnen
Eingabe, Doppelklick: schließen und aufnehmen
Strg+C: kopieren     Strg+S: speichern     T: Text auslesen
R: letzter Bereich noch einmal     C: Farbe am Zeiger kopieren
Esc: abbrechen</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>%1 is running already, but does not answer. End that program, and then start it again.</source>
        <translation>%1 läuft bereits, antwortet aber nicht. Beenden Sie das Programm und starten Sie es dann neu.</translation>
    </message>
    <message>
        <source>SnapWorkbench.xml is missing so that it can not work properly</source>
        <translation>SnapWorkbench.xml fehlt, daher ist kein Betrieb möglich</translation>
    </message>
    <message>
        <source>%1 can&apos;t start: %2 is missing or damaged. Install the program again.</source>
        <translation>%1 kann nicht starten: %2 fehlt oder ist beschädigt. Installieren Sie das Programm neu.</translation>
    </message>
    <message>
        <source>%1 can&apos;t start, since it can&apos;t write %2: %3</source>
        <translation>%1 kann nicht starten, weil es %2 nicht schreiben kann: %3</translation>
    </message>
    <message>
        <source>%1 was being saved when the program was cut off, and has been changed since then. What was to be saved is in %2.</source>
        <translation>%1 wurde gerade gespeichert, als das Programm abbrach, und ist seither verändert worden. Was gespeichert werden sollte, steht in %2.</translation>
    </message>
</context>
</TS>
