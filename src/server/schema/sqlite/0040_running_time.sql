-- Why: a wall clock that jumps must not lock a login for a year, end sessions or forget client keys.
-- Ages are counted in microseconds during which a server over this database ran; every server moves
-- the one row on by its own steady clock, and the furthest counts.
create table RunningTime (
  Id      integer not null primary key check (Id = 1),
  Elapsed integer not null
) strict;
insert into RunningTime (Id, Elapsed) values (1, 0);

alter table Session add column SeenAt integer not null default 0;
drop index SessionByLastSeen;
create index SessionBySeenAt on Session (SeenAt);

alter table ClientKey add column KeptAt integer not null default 0;
drop index ClientKeyByCreatedOn;
create index ClientKeyByKeptAt on ClientKey (KeptAt);

-- Attempts of a login from machines it is not known from, of a login from one it is known from, and
-- of an address, told apart by the prefix of Subject.
drop table LoginAttempt;
create table LoginAttempt (
  Subject    text not null primary key,
  Failures   integer not null,
  FailedAt   integer not null,
  LockedTill integer
) strict, without rowid;

-- Machines from which a user has logged in; Machine is a hash.
create table KnownMachine (
  Login   text not null,
  Machine text not null,
  SeenAt  integer not null,
  primary key (Login, Machine)
) strict, without rowid;
create index KnownMachineBySeenAt on KnownMachine (SeenAt);
