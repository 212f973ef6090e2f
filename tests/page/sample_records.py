"""Records of events and logs, as the host writes them with --events and --log."""

import datetime
import json

BIOS = 992614500
EC_LOG = 992614512
COMPONENT = 992614518
DEVICE_LIST = 992614533

START = datetime.datetime(2026, 3, 2, 8, 0, 0, tzinfo=datetime.timezone.utc)

# What a device might call itself to leave its place in the page, or to look like another one.
EVIL_NAMES = [
    '<img src=x onerror="window.taken=1">',
    '</script><script>window.taken=1</script>',
    '<!--<script>',
    '"><svg onload=window.taken=1>',
    '&lt;b&gt; &amp; {{x}} ${1} \u2028\u2029',
    'gro\u202egnp.exe',
    "O'Hara \"\\\\server\\printer\"",
]


LOOP_LINE = "BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())"


def event(hours, number, fields):
    time = START + datetime.timedelta(hours=hours)
    return {"time": time.strftime("%Y-%m-%dT%H:%M:%S.000Z"), "id": number,
            "fields": [{"key": key, "value": value} for key, value in fields]}


def device(name, number, maker="Tastora GmbH", kind="HIDClass"):
    return {"class": kind, "desc": f"device {number}", "device": f"VID_3A5C&PID_{number:04X}",
            "maker": maker, "name": name}


def chunk(devices):
    return json.dumps(devices, ensure_ascii=False, separators=(",", ":"), sort_keys=True)


def bios(hours, product="CB-L165"):
    return event(hours, BIOS, [("Product", product), ("String7", "Corvane Notebook 14 G5"),
                               ("Version", "")])


def component(hours, status="1"):
    return event(hours, COMPONENT, [("mode", "OPEN_MODE"), ("status", status),
                                    ("version", "12.0.3.105")])


def ec_log(hours):
    return event(hours, EC_LOG, [("ECLog", "".join(f"0x{n % 256:02x}" for n in range(1, 254)))])


def device_list(hours, names, displays=2):
    """Two parts, the way the plug-in sends them: the second has the longer list only."""
    devices = [device(name, number) for number, name in enumerate(names)]
    half = (len(devices) + 1) // 2
    shown = [device(f"Bildschirm {n}", 900 + n, "ACM#", "Monitor") for n in range(displays)]
    return [event(hours, DEVICE_LIST, [("HIDList", chunk(devices[:half])),
                                       ("DisplayList", chunk(shown))]),
            event(hours + 0.002, DEVICE_LIST, [("HIDList", chunk(devices[half:]))])]


def sample():
    """A few days with each kind of event, and some that no plug-in sends."""
    names = ["Büro-Tastatur", "Maus"]
    return [bios(0), component(0.01), component(24), *device_list(24.1, names), ec_log(30),
            component(48), *device_list(48.2, [*names, "Stick 64 GB"]),
            bios(72.5), event(73, DEVICE_LIST, [("HIDList", "no array")]),
            event(74, 17, [("Strange", "value")])]


def sample_log():
    lines = [(0, 3, "Register timer:12(TimerReportMgr::RegisterReportCallback)"),
             (1, 3, LOOP_LINE),
             (24.1, 3, "Peripheral list(DeviceReporter::ReportDeviceInfo::DoReportDevices)"),
             (29.999, 3, "EC log data size is 16(ReportECLogInfo)"),
             (60, 4, "SmBiosHelper is nullptr<b>(ReportBiosInfo::OnRecvReportInfo)"),
             (61, 3, LOOP_LINE)]
    text = ""
    for hours, level, line in lines:
        # The log has local time.
        time = (START + datetime.timedelta(hours=hours)).astimezone()
        text += f"{time.strftime('%Y-%m-%d %H:%M:%S')}.000 [{level}] {line}\n"
    return text


def evil(address):
    """Device texts that are markup; one would load a picture from `address`."""
    names = [*EVIL_NAMES, f'<img src="{address}/leak">']
    return [bios(0, EVIL_NAMES[1]), *device_list(24, names),
            event(30, EC_LOG, [("ECLog", EVIL_NAMES[0])]),
            event(31, 18, [(EVIL_NAMES[0], EVIL_NAMES[1])])]


def many(count):
    """`count` events of every kind, one with a name of its own in the middle."""
    events = []
    hours = 0
    while len(events) < count:
        hours += 24
        events += [bios(hours), component(hours + 1), ec_log(hours + 2),
                   *device_list(hours + 3, [f"Gerät {hours} {n}" for n in range(8)])]
    events = events[:count]
    events[count // 2] = bios(0, "needle")
    events[count // 2]["time"] = events[count // 2 - 1]["time"]
    return events


def write(path, events):
    with open(path, "w", encoding="utf-8") as file:
        for one in events:
            file.write(json.dumps(one, ensure_ascii=False) + "\n")
