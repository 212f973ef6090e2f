// Events over time: a lane for each kind, cut into columns so that their number is bounded.

const COLUMNS = 120;
const HOUR = 3600000;
const TICK_STEPS = [1 / 60, 1 / 12, 0.25, 1, 3, 6, 12, 24, 48, 168, 336, 720, 2160, 8760, 87600]
    .map((hours) => hours * HOUR);

const period = events.reduce((span, { time }) =>
    ({ from: Math.min(span.from, time), to: Math.max(span.to, time) }), { from: Infinity, to: -Infinity });
const length = Math.max(period.to - period.from, 1000);
const columnOf = (time) => Math.min(Math.floor((time - period.from) / length * COLUMNS), COLUMNS - 1);

function ticks() {
    const step = TICK_STEPS.find((candidate) => length / candidate <= 8) || length;
    const found = [];
    for (let time = Math.ceil(period.from / step) * step; time <= period.to; time += step) {
        const [begin, end] = step > 24 * 31 * HOUR ? [0, 10] : step >= 24 * HOUR ? [5, 10] : [5, 16];
        const mark = element('span', {}, timeText(time).slice(begin, end));
        mark.style.left = `${(time - period.from) / length * 100}%`;
        found.push(mark);
    }
    return found;
}

/** The events of a kind that are shown, by column. */
function laneMarks(kind) {
    const columns = {};
    for (const event of shownEvents.filter((one) => one.kind === kind)) {
        (columns[columnOf(event.time)] ||= []).push(event);
    }
    return Object.entries(columns);
}

function drawTimeline() {
    const lanes = kindsPresent().map((kind) => {
        const rule = ruleOf(kind);
        const track = element('div', { class: 'track' });
        for (const [column, held] of laneMarks(kind)) {
            const mark = button({ class: `mark ${rule.colour}`, tabindex: '-1', 'data-column': column,
                'aria-label': `${rule.name}, ${timeText(held[0].time)}, ${count(held.length, 'event')}`,
                title: `${timeText(held[0].time)}: ${count(held.length, 'event')}` },
            () => eventList.select(shownEvents.indexOf(held[0])));
            mark.style.left = `${(Number(column) + 0.5) / COLUMNS * 100}%`;
            mark.style.height = `${Math.min(45 + 15 * Math.log2(held.length), 95)}%`;
            track.append(mark);
        }
        return element('div', { class: 'lane' }, element('span', { class: 'lane-name' }, rule.name), track);
    });
    replaceContent(byId('lanes'), lanes,
        element('div', { class: 'lane axis', 'aria-hidden': 'true' }, element('span', { class: 'lane-name' }, 'UTC'),
            element('div', { class: 'track' }, ticks())));
    const first = byId('lanes').querySelector('button');
    if (first) {
        first.tabIndex = 0;
    }
}

/** The mark that an arrow key leads to; null at an end. */
function neighbour(mark, key) {
    const column = (one) => Number(one.dataset.column);
    const lane = mark.closest('.lane');
    if (key === 'ArrowLeft' || key === 'ArrowRight') {
        const inLane = [...lane.querySelectorAll('button')];
        return inLane[inLane.indexOf(mark) + (key === 'ArrowLeft' ? -1 : 1)] || null;
    }
    const step = key === 'ArrowUp' ? 'previousElementSibling' : 'nextElementSibling';
    for (let other = lane[step]; other; other = other[step]) {
        const marks = [...other.querySelectorAll('button')];
        if (marks.length > 0) {
            const distance = (one) => Math.abs(column(one) - column(mark));
            return marks.reduce((best, one) => (distance(one) < distance(best) ? one : best));
        }
    }
    return null;
}

function setUpTimeline() {
    byId('lanes').addEventListener('keydown', (event) => {
        const mark = event.target.closest('button');
        if (mark && event.key.startsWith('Arrow')) {
            event.preventDefault();
            const next = neighbour(mark, event.key);
            if (next) {
                mark.tabIndex = -1;
                next.tabIndex = 0;
                next.focus();
            }
        }
    });
}
