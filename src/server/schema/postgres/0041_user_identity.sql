-- Why: a ticket of a removed user opened the session of a later user of the same login. Who a user is
-- tells his identity, which no other ever has; sessions opened before this step end with it.
alter table WSysUsers add column Identity text collate "C" default gen_random_uuid()::text;
alter table Session add column UserIdentity text collate "C";

create function UserWasForgotten() returns trigger language plpgsql as $$
begin
  delete from ClientKey where Login = old.ShortName;
  delete from KnownMachine where Login = old.ShortName;
  return null;
end $$;
create trigger UserWasForgotten after delete on WSysUsers
  for each row execute function UserWasForgotten();
