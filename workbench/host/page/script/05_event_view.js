// One event: as a row, and in full.

function eventRow(event) {
    const rule = ruleOf(event.id);
    return [
        element('span', { class: 'line' },
            element('span', { class: `mark ${rule.colour}`, 'aria-hidden': 'true' }),
            element('b', {}, rule.short),
            element('time', { datetime: new Date(event.time).toISOString() }, timeText(event.time))),
        element('span', { class: 'line second' }, foreign(summaryOf(event)),
            element('span', { class: 'size' }, byteText(event.bytes))),
    ];
}

const DEVICE_COLUMNS = ['class', 'name', 'desc', 'maker', 'device'];

/** Devices as a table; members that the plug-in does not send get columns of their own. */
function deviceTable(devices, caption) {
    const others = new Set(devices.flatMap(Object.keys));
    const columns = DEVICE_COLUMNS.filter((column) => others.delete(column)).concat([...others]);
    return table(columns.map(visible), devices.map((device) => columns.map((column) =>
        (device[column] === undefined || device[column] === ''
            ? element('span', { class: 'none' }, '\u2013') : foreign(device[column])))), caption);
}

function sectionView([key, section]) {
    return [deviceTable(section.devices, [foreign(key), ` \u00b7 ${count(section.devices.length, 'device')} \u00b7 `,
        byteText(section.bytes)]),
    section.unreadable.map((chunk) => element('div', {}, element('p', {}, 'A part that cannot be read:'),
        element('pre', {}, foreign(chunk))))];
}

function dumpView(field) {
    const bytes = bytesOfHex(field.value);
    const dump = [];
    for (let from = 0; from < bytes.length; from += 16) {
        const row = bytes.slice(from, from + 16);
        dump.push(element('span', { class: row.every((byte) => byte === 0) ? 'none' : null },
            String(from).padStart(3, ' ') + '  ' +
            row.map((byte) => byte.toString(16).padStart(2, '0')).join(' ') + '\n'));
    }
    return [element('h4', {}, foreign(field.key), ` \u00b7 ${count(bytes.length, 'byte')} as ${count(field.value.length, 'character')}`),
        element('pre', { class: 'dump' }, dump)];
}

function plainFields(fields) {
    return table(['key', 'value', 'bytes'], fields.map((field) => [foreign(field.key),
        field.value === '' ? element('span', { class: 'none' }, '(empty)') : foreign(field.value),
        String(field.bytes)]));
}

function fieldsView(event) {
    if (event.id === DEVICE_LIST) {
        return [...sectionsOf([event])].map(sectionView);
    }
    return event.id === EC_LOG && event.fields.every((field) => bytesOfHex(field.value))
        ? event.fields.map(dumpView) : plainFields(event.fields);
}

/** What this record says about the conditions of the event. */
function seenFor(event) {
    const previous = previousOf(event);
    const span = previous ? event.time - previous.time : null;
    const since = previous ? `${spanText(span)} after the one before it in this record.`
        : 'The first one in this record.';
    if (event.id === DEVICE_LIST) {
        const parts = lists[event.list].events;
        const part = parts.indexOf(event);
        return [part === 0 ? `List: ${since}`
            : `A further part of a list that began at ${timeText(parts[0].time)}.`,
        knowsNumbers ? `List ${listNumber(event.list)} of at most 10 since the installation.`
            : `List ${listNumber(event.list)} of this record, which does not say how many were sent before.`];
    }
    if (event.id === BIOS && previous && span < 72 * 3600000) {
        return [since, 'That is less than 72 hours: what the plug-in keeps in the registry was changed in between, or the record joins several machines.'];
    }
    if (event.id === EC_LOG) {
        const told = lines.filter((line) => line.time <= event.time + 1000 &&
            line.text.startsWith('EC log data size is ')).pop();
        return told ? [since, `The log says how many bytes the firmware calls used: ${parseInt(told.text.slice(20), 10)}.`]
            : [since];
    }
    return [since];
}

function reasonView(event) {
    const rule = ruleOf(event.id);
    return [
        titledList('What let it out', rule.gates || [rule.when], rule.gates ? 'gates' : null),
        element('p', { class: 'consent' }, rule.consent || NO_CONSENT),
        titledList('Seen in this record', seenFor(event)),
        titledList('Masked or cut', rule.masked),
    ];
}

function rawView(event) {
    return element('details', {}, element('summary', {}, 'Exactly as sent'),
        event.fields.map((field) => [element('h5', {}, foreign(field.key), ' \u00b7 ', byteText(field.bytes)),
            element('pre', {}, foreign(field.value))]));
}

function eventHeading(event, level) {
    const rule = ruleOf(event.id);
    return element('div', { class: `event-heading ${rule.colour}` },
        element(level, {}, rule.name, ' ', element('small', {}, `event ${event.id}`)),
        element('p', {}, `${timeText(event.time)} UTC \u00b7 ${count(event.fields.length, 'field')} \u00b7 `,
            byteText(event.bytes), ` \u00b7 number ${event.index + 1} of ${events.length}`));
}

function showDetail(event) {
    const box = byId('detail');
    box.scrollTop = 0;
    if (!event) {
        replaceContent(box, element('p', { class: 'empty' }, events.length === 0
            ? 'The plug-in sent nothing.' : 'Select an event to see it in full.'));
        return;
    }
    const link = event.list === null ? null : element('p', {},
        button({ class: 'link' }, () => showList(event.list, true), 'Show the whole list'));
    replaceContent(box, eventHeading(event, 'h4'), link,
        fieldsView(event), reasonView(event), rawView(event));
}
