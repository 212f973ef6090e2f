// Which events are shown.

const filter = { kinds: new Set(KINDS), words: [], key: '', number: '' };
let shownEvents = events;

function passes(event) {
    return filter.kinds.has(event.kind) &&
        (filter.key === '' || event.fields.some((field) => field.key === filter.key)) &&
        (filter.number === '' ||
            (event.list !== null && String(listNumber(event.list)) === filter.number)) &&
        filter.words.every((word) => searchTextOf(event).includes(word));
}

function applyFilter() {
    filter.words = wordsOf(byId('search').value);
    filter.key = byId('key').value;
    filter.number = byId('number').value.trim();
    shownEvents = events.filter(passes);
    eventList.setItems(shownEvents, eventList.item);
    byId('status').textContent = `${shownEvents.length.toLocaleString('en')} of ` +
        `${count(events.length, 'event')}, ${byteText(bytesOf(shownEvents))}`;
    for (const toggle of byId('kinds').children) {
        toggle.setAttribute('aria-pressed', String(filter.kinds.has(Number(toggle.dataset.kind))));
    }
    drawTimeline();
    if (!eventList.item) {
        eventList.select(0, true);
        showDetail(eventList.item);
    }
}

function toggleKind(kind) {
    if (!filter.kinds.delete(kind)) {
        filter.kinds.add(kind);
    }
    applyFilter();
}

function resetFilter() {
    filter.kinds = new Set(KINDS);
    for (const id of ['search', 'key', 'number']) {
        byId(id).value = '';
    }
    applyFilter();
}

const kindsPresent = () => KINDS.filter((kind) => kind !== 0 || events.some((event) => event.kind === 0));

function setUpFilter() {
    kindsPresent().forEach((kind, i) => {
        const rule = ruleOf(kind);
        byId('kinds').append(button({ class: `kind ${rule.colour}`, 'data-kind': kind,
            title: `Show or hide: ${rule.name} (${i + 1})` }, () => toggleKind(kind),
        element('span', { class: `mark ${rule.colour}`, 'aria-hidden': 'true' }), rule.short));
    });
    replaceContent(byId('key'), element('option', { value: '' }, 'any'),
        [...listKeys].map((key) => element('option', { value: key }, visible(key))));
    for (const [id, kind] of [['search', 'input'], ['key', 'change'], ['number', 'input']]) {
        byId(id).addEventListener(kind, applyFilter);
    }
    byId('reset').addEventListener('click', resetFilter);
}

function showSummary() {
    const tile = (rule, chosen) => element('div', { class: `tile ${rule.colour}` },
        element('p', { class: 'name' }, rule.name),
        element('p', { class: 'amount' }, chosen.length.toLocaleString('en'), ' ',
            element('small', {}, byteText(bytesOf(chosen)))),
        element('p', { class: 'period' }, chosen.length === 0 ? 'none sent'
            : [...new Set([chosen[0], chosen[chosen.length - 1]].map((event) => dateText(event.time)))]
                .join(' \u2013 ')));
    replaceContent(byId('tiles'), tile({ name: 'All events', colour: 'all' }, events),
        kindsPresent().map((kind) => tile(ruleOf(kind), events.filter((event) => event.kind === kind))));
}
