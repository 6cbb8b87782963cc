<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>DownloadProgress</name>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>The printer is writing its memory: this may take up to %n second</numerusform>
            <numerusform>The printer is writing its memory: this may take up to %n seconds</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>The printer is writing its memory: this may take up to %n minute</numerusform>
            <numerusform>The printer is writing its memory: this may take up to %n minutes</numerusform>
        </translation>
    </message>
</context>
</TS>
