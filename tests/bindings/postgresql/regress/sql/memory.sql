-- A query of 2,000,000 rows leaves no memory behind, and takes no more than one of few rows does.
CREATE FUNCTION memory_kb(item text) RETURNS integer LANGUAGE sql VOLATILE AS $$
    SELECT (regexp_match(pg_read_file('/proc/self/status'), item || ':\s+(\d+)'))[1]::integer
$$;
-- Calls every function for each of this many rows.
CREATE FUNCTION call_all(rows integer) RETURNS bigint LANGUAGE sql VOLATILE AS $$
    SELECT count(fdn_type(fdn)) + count(fdn_kind(fdn)) + sum(fdn_ne(fdn)) + count(fdn_get(fdn, 'PP:3'))
           + sum(fdn_number(fdn, 'PP:2')) + count(fdn_field(fdn, 'portLabel')) + count(fdn_record(fdn))
           + count(fdn_problem(fdn)) + count(fdn_set(fdn, 'NE', '12')) + count((fdn_port(fdn)).name)
           + count(*) FILTER (WHERE fdn_under(fdn, 'NE=7,FR=1')) + count(*) FILTER (WHERE fdn_same(fdn, 'NE=7,FR=1'))
           + count(fb_name(i)) + count(fb_level(i))
      FROM (SELECT i, format('NE=%s,FR=1,S=%s,CP=-1,PP=16|1025|%s|a name that needs memory', i % 2000, i % 16, i % 48) AS fdn
              FROM (SELECT generate_series(1, rows) AS i) AS numbers OFFSET 0) AS texts
$$;
CREATE FUNCTION fail_often(times integer) RETURNS integer LANGUAGE plpgsql AS $$
DECLARE
    caught integer := 0;
BEGIN
    FOR i IN 1..times LOOP
        BEGIN
            PERFORM fdn_get('NE=5', repeat('x', 10000));
        EXCEPTION WHEN invalid_parameter_value THEN
            caught := caught + 1;
        END;
    END LOOP;
    RETURN caught;
END $$;
SET max_parallel_workers_per_gather = 0;
SELECT call_all(20000) > 0 AS warm, fail_often(100) AS caught;
SELECT memory_kb('RssAnon') AS before, memory_kb('VmHWM') AS most_before \gset
SELECT call_all(2000000) > 0 AS called, fail_often(20000) AS caught;
SELECT memory_kb('RssAnon') - :before < 1024 AS "less than 1 MB left",
       memory_kb('VmHWM') - :most_before < 2048 AS "never 2 MB more";
