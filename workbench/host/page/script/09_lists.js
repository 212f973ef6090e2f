// Device lists, put together again.

const LISTS_AT_A_TIME = 50;
let currentList = lists.length - 1;

/** The devices of `list` that `other` lacks, by key. A device may be there several times. */
function missingFrom(list, other) {
    const found = [];
    for (const [key, section] of sectionsOf(list)) {
        const rest = (other ? (sectionsOf(other).get(key) || { devices: [] }).devices : [])
            .map((device) => JSON.stringify(device));
        for (const device of section.devices) {
            const at = rest.indexOf(JSON.stringify(device));
            if (at >= 0) {
                rest.splice(at, 1);
            } else {
                found.push({ key, device });
            }
        }
    }
    return found;
}

const listBytes = (list) => list.events.reduce((sum, event) => sum + event.bytes, 0);

function listKeys() {
    const keys = new Set();
    for (const event of events) {
        if (event.list !== null) {
            event.fields.forEach((field) => keys.add(field.key));
        }
    }
    return [...keys];
}

function changeText(index) {
    if (index === 0) {
        return '';
    }
    const added = missingFrom(lists[index], lists[index - 1]).length;
    const gone = missingFrom(lists[index - 1], lists[index]).length;
    return added + gone === 0 ? 'as before' : [added ? `${added} new` : '', gone ? `${gone} gone` : '']
        .filter((text) => text !== '').join(', ');
}

function overview() {
    const keys = listKeys();
    const first = currentList - currentList % LISTS_AT_A_TIME;
    const rows = lists.slice(first, first + LISTS_AT_A_TIME).map((list) => {
        const button = element('button', { type: 'button', class: 'link',
            'aria-pressed': String(list.index === currentList) }, `List ${listNumber(list.index)}`);
        button.addEventListener('click', () => showList(list.index));
        return [button, timeText(list.events[0].time), String(list.events.length), byteText(listBytes(list)),
            ...keys.map((key) => String((sectionsOf(list).get(key) || { devices: [] }).devices.length)),
            changeText(list.index)];
    });
    return table(['list', 'sent at, UTC', 'parts', 'size', ...keys.map(visible), 'change'], rows,
        'Devices of each list, by the key under which they were sent');
}

function changes(index) {
    const view = (title, found) => (found.length === 0 ? [] : [element('h4', {}, title),
        deviceTable(found.map(({ key, device }) => ({ list: key, ...device })), null)]);
    return index === 0 ? [] : [
        ...view(`New since list ${listNumber(index - 1)}`, missingFrom(lists[index], lists[index - 1])),
        ...view(`Gone since list ${listNumber(index - 1)}`, missingFrom(lists[index - 1], lists[index]))];
}

function listInFull(index) {
    const list = lists[index];
    return [element('h3', { id: 'list-title', tabindex: '-1' }, `List ${listNumber(index)} in full `,
        element('small', {}, `${timeText(list.events[0].time)} UTC \u00b7 ${count(list.events.length, 'part')} \u00b7 `,
            byteText(listBytes(list)))),
    ...changes(index),
    ...[...sectionsOf(list)].flatMap(([key, section]) => [
        deviceTable(section.devices, [foreign(key), ` \u00b7 ${count(section.devices.length, 'device')} \u00b7 `,
            byteText(section.bytes)]),
        ...section.unreadable.map((chunk) => element('div', {}, element('p', {}, 'A part that cannot be read:'),
            element('pre', {}, foreign(chunk))))])];
}

/** Buttons that lead to the lists before and behind those of the overview. */
function turner() {
    const button = (text, steps) => {
        const target = Math.min(Math.max(currentList + steps, 0), lists.length - 1);
        const made = element('button', { type: 'button', disabled: target === currentList }, text);
        made.addEventListener('click', () => showList(target));
        return made;
    };
    return element('p', { class: 'turner' }, button('Earlier lists', -LISTS_AT_A_TIME),
        button('Later lists', LISTS_AT_A_TIME), element('span', {}, count(lists.length, 'list')));
}

function drawLists() {
    if (lists.length === 0) {
        replaceContent(byId('lists-body'), element('p', { class: 'empty' }, 'No device list was sent.'));
        return;
    }
    replaceContent(byId('lists-body'), overview(), lists.length > LISTS_AT_A_TIME ? turner() : null,
        listInFull(currentList));
}

function showList(index, goThere = false) {
    currentList = index;
    drawLists();
    if (goThere) {
        byId('list-title').focus();
        byId('list-title').scrollIntoView({ block: 'start' });
    } else {
        byId('lists-body').querySelector('[aria-pressed=true]').focus();
    }
}
