<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <translation>Download new firmware to the selected USB printer? The printer cannot print until this is done, and must stay switched on.</translation>
    </message>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <translation>Download new firmware to the selected network printer? Others may be using it: it cannot print until this is done, and must stay switched on.</translation>
    </message>
</context>
</TS>
