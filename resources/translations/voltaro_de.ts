<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>Voltaro</name>
    <message>
        <source>Charging</source>
        <translation>Lädt</translation>
    </message>
    <message>
        <source>Power adapter</source>
        <translation>Netzteil</translation>
    </message>
    <message>
        <source>On battery</source>
        <translation>Akkubetrieb</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Akku</translation>
    </message>
    <message>
        <source>Battery is fully charged</source>
        <translation>Akku ist vollständig geladen</translation>
    </message>
    <message>
        <source>Not charging</source>
        <translation>Wird nicht geladen</translation>
    </message>
    <message>
        <source>Calculating time…</source>
        <translation>Zeit wird berechnet …</translation>
    </message>
    <message>
        <source>Until fully charged</source>
        <translation>Bis vollständig geladen</translation>
    </message>
    <message numerus="yes">
        <source>%n hour(s)</source>
        <translation>
            <numerusform>%n Stunde</numerusform>
            <numerusform>%n Stunden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n Minute</numerusform>
            <numerusform>%n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>Power</source>
        <translation>Leistung</translation>
    </message>
    <message>
        <source>Mac power usage</source>
        <translation>Stromverbrauch des Mac</translation>
    </message>
    <message>
        <source>Power usage</source>
        <translation>Stromverbrauch</translation>
    </message>
    <message>
        <source>To battery</source>
        <translation>In den Akku</translation>
    </message>
    <message>
        <source>From battery</source>
        <translation>Aus dem Akku</translation>
    </message>
    <message>
        <source>Charger output</source>
        <translation>Netzteilleistung</translation>
    </message>
    <message>
        <source>Charger rated at %@</source>
        <translation>Netzteil mit %@ Nennleistung</translation>
    </message>
    <message>
        <source>W</source>
        <translation>W</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Low Power Mode</source>
        <translation>Stromsparmodus</translation>
    </message>
    <message>
        <source>App energy usage</source>
        <translation>Energieverbrauch der Apps</translation>
    </message>
    <message>
        <source>average over 20 sec</source>
        <translation>Durchschnitt über 20 s</translation>
    </message>
    <message>
        <source>collected %d sec / 20 sec</source>
        <translation>%d s / 20 s erfasst</translation>
    </message>
    <message>
        <source>Gathering data…</source>
        <translation>Daten werden gesammelt …</translation>
    </message>
    <message>
        <source>Battery health</source>
        <translation>Akkuzustand</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>Kapazität</translation>
    </message>
    <message>
        <source>Cycle count</source>
        <translation>Ladezyklen</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ von %@</translation>
    </message>
    <message>
        <source>Wh</source>
        <translation>Wh</translation>
    </message>
    <message>
        <source>mAh</source>
        <translation>mAh</translation>
    </message>
    <message>
        <source>less than 0.01 W</source>
        <translation>weniger als 0,01 W</translation>
    </message>
    <message>
        <source>%lld</source>
        <translation>%lld</translation>
    </message>
    <message>
        <source>Battery Settings</source>
        <translation>Akkueinstellungen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Could not open system confirmation</source>
        <translation>Systembestätigung konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Change cancelled</source>
        <translation>Änderung abgebrochen</translation>
    </message>
    <message>
        <source>Could not change mode</source>
        <translation>Modus konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>This user may not change the power profile</source>
        <translation>Dieser Benutzer darf das Energieprofil nicht ändern</translation>
    </message>
    <message>
        <source>Battery %d percent, %@</source>
        <translation>Akku %d Prozent, %@</translation>
    </message>
    <message>
        <source>Open Dashboard</source>
        <translation>Übersicht öffnen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Quit Voltaro</source>
        <translation>Voltaro beenden</translation>
    </message>
    <message>
        <source>Voltaro Settings</source>
        <translation>Voltaro-Einstellungen</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Approval required in System Settings</source>
        <translation>Bestätigung in den Systemeinstellungen erforderlich</translation>
    </message>
    <message>
        <source>Launch at login could not be changed (%@).</source>
        <translation>Das Starten bei der Anmeldung konnte nicht geändert werden (%@).</translation>
    </message>
    <message>
        <source>Show Percentage in Menu Bar</source>
        <translation>Prozent in der Menüleiste zeigen</translation>
    </message>
    <message>
        <source>Show Power Usage in Menu Bar</source>
        <translation>Stromverbrauch in der Menüleiste zeigen</translation>
    </message>
    <message>
        <source>Highlight Battery Drain in Yellow</source>
        <translation>Akkuentladung gelb hervorheben</translation>
    </message>
    <message>
        <source>Temperature Unit</source>
        <translation>Temperatureinheit</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>No battery found</source>
        <translation>Kein Akku gefunden</translation>
    </message>
    <message>
        <source>On</source>
        <translation>An</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Low Power Mode is on</source>
        <translation>Stromsparmodus ist an</translation>
    </message>
    <message>
        <source>Low Power Mode is off</source>
        <translation>Stromsparmodus ist aus</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 Stunden</translation>
    </message>
    <message>
        <source>7 days</source>
        <translation>7 Tage</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>Ladestand</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Most energy over 24 hours</source>
        <translation>Höchster Energieverbrauch in 24 Stunden</translation>
    </message>
    <message>
        <source>Most energy over 7 days</source>
        <translation>Höchster Energieverbrauch in 7 Tagen</translation>
    </message>
    <message>
        <source>No application energy recorded yet</source>
        <translation>Noch kein Energieverbrauch von Apps aufgezeichnet</translation>
    </message>
    <message>
        <source>Nothing recorded in this period</source>
        <translation>In diesem Zeitraum nichts aufgezeichnet</translation>
    </message>
    <message>
        <source>Power draw</source>
        <translation>Leistungsaufnahme</translation>
    </message>
    <message>
        <source>Power history</source>
        <translation>Energieverlauf</translation>
    </message>
    <message>
        <source>Voltaro History</source>
        <translation>Voltaro-Verlauf</translation>
    </message>
    <message>
        <source>Wh</source>
        <translation>Wh</translation>
    </message>
</context>
</TS>
